// What every desktop's panels and screens keep.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "contracts/support/contract_host.h"
#include "contracts/support/test_content.h"
#include "platform/panels.h"
#include "platform/screens.h"

namespace quillo::contracts {

// The desktop has another program, which covers the screen and has the focus.
class PanelsHost : public ContractHost {
 public:
  virtual Panels& panels() = 0;
  virtual Screens& screens() = 0;
  virtual bool programHasFocus() = 0;
  virtual int clicksOfProgram() = 0;
  virtual int keysOfProgram() = 0;
  // The user; what it leads to happens later.
  virtual void click(Point place) = 0;
  virtual void press(KeyEquivalent key) = 0;
};

// A click that is known to be over, since the panel or what is below has seen it.
inline bool clickReachesPanel(PanelsHost& host, const TestContent& content, Point point) {
  const std::size_t before = content.pressed().size();
  const int beforeBelow = host.clicksOfProgram();
  host.click(point);
  EXPECT_TRUE(host.runUntil(
      [&] { return content.pressed().size() > before || host.clicksOfProgram() > beforeBelow; }));
  return content.pressed().size() > before;
}

class PanelsContract : public PortContract<PanelsHost> {
 protected:
  static constexpr Rect place{{200, 100}, {300, 80}};
  static constexpr Point inside{350, 140};

  Panel& make(PanelStyle style) {
    panel_ = host().panels().make({place.size, style}, content_);
    panel_->setFrameOrigin(place.origin);
    return *panel_;
  }
  const std::vector<std::string>& pressed() const { return content_.pressed(); }
  bool clickReachesPanel(Point point) {
    return contracts::clickReachesPanel(host(), content_, point);
  }

  TestContent content_;
  std::unique_ptr<Panel> panel_;
};

TEST_P(PanelsContract, AStatusPanelIsShownWhereItIsPutAndNeverTakesTheFocus) {
  Panel& panel = make(PanelStyle::status);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_EQ(panel.frame(), place);
  EXPECT_FALSE(clickReachesPanel(inside));

  panel.orderFrontRegardless();
  EXPECT_TRUE(panel.isVisible());
  EXPECT_EQ(panel.frame(), place);
  EXPECT_TRUE(clickReachesPanel(inside));
  EXPECT_TRUE(host().programHasFocus());
  host().press(KeyEquivalent::defaultAction);
  EXPECT_TRUE(host().runUntil([&] { return host().keysOfProgram() == 1; }));
  EXPECT_FALSE(clickReachesPanel({place.maxX() + 1, inside.y}));
  EXPECT_FALSE(clickReachesPanel({inside.x, place.minY() - 1}));

  // It grows upwards, and moves while it is shown.
  panel.setContentSize({300, 120});
  EXPECT_EQ(panel.frame(), (Rect{{200, 100}, {300, 120}}));
  panel.setFrameOrigin({20, 300});
  EXPECT_EQ(panel.frame(), (Rect{{20, 300}, {300, 120}}));
  EXPECT_FALSE(clickReachesPanel(inside));
  EXPECT_TRUE(clickReachesPanel({25, 410}));

  panel.orderOut();
  EXPECT_FALSE(panel.isVisible());
  EXPECT_FALSE(clickReachesPanel({25, 410}));
  panel.orderFrontRegardless();
  EXPECT_TRUE(clickReachesPanel({25, 410}));
  panel_.reset();
  EXPECT_FALSE(clickReachesPanel({25, 410}));
  EXPECT_TRUE(host().programHasFocus());
}

TEST_P(PanelsContract, ClicksPassThroughForAsLongAsTheyAreIgnored) {
  Panel& panel = make(PanelStyle::status);
  panel.setMouseEvents(MouseEvents::ignored);
  panel.orderFrontRegardless();
  EXPECT_FALSE(clickReachesPanel(inside));
  panel.setMouseEvents(MouseEvents::accepted);
  EXPECT_TRUE(clickReachesPanel(inside));
  panel.orderOut();
  panel.setMouseEvents(MouseEvents::ignored);
  panel.orderFrontRegardless();
  EXPECT_FALSE(clickReachesPanel(inside));
}

TEST_P(PanelsContract, ADialogTakesTheKeysAndGivesTheFocusBack) {
  Panel& panel = make(PanelStyle::dialog);
  content_.setAcceptsKeys(false);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(host().runUntil([&] { return !host().programHasFocus(); }));
  host().press(KeyEquivalent::defaultAction);
  host().runFor(std::chrono::milliseconds(100));
  EXPECT_THAT(pressed(), testing::IsEmpty());  // dropped

  content_.setAcceptsKeys(true);
  host().press(KeyEquivalent::defaultAction);
  host().press(KeyEquivalent::cancelAction);
  ASSERT_TRUE(host().runUntil([&] { return pressed().size() == 2; }));
  EXPECT_THAT(pressed(), testing::ElementsAre("return", "escape"));
  EXPECT_TRUE(clickReachesPanel(inside));
  EXPECT_EQ(host().keysOfProgram(), 0);

  panel.orderOut();
  ASSERT_TRUE(host().runUntil([&] { return host().programHasFocus(); }));
  host().press(KeyEquivalent::defaultAction);
  ASSERT_TRUE(host().runUntil([&] { return host().keysOfProgram() == 1; }));
  EXPECT_EQ(pressed().size(), 3u);
}

TEST_P(PanelsContract, AFadeTellsItsEndUnlessItIsEnded) {
  Panel& panel = make(PanelStyle::status);
  panel.orderFrontRegardless();
  int faded = 0;
  const MonotonicTime begun = host().mainThread().now();
  panel.fadeOut(std::chrono::milliseconds(60), [&] {
    ++faded;
    panel.orderOut();
  });
  EXPECT_EQ(faded, 0);
  ASSERT_TRUE(host().runUntil([&] { return faded == 1; }));
  EXPECT_GE(host().mainThread().now() - begun, Duration(std::chrono::milliseconds(55)));
  EXPECT_FALSE(panel.isVisible());

  panel.orderFrontRegardless();
  panel.fadeOut(std::chrono::milliseconds(60), [&] { ++faded; });
  panel.setAlpha(1);
  host().runFor(std::chrono::milliseconds(120));
  EXPECT_EQ(faded, 1);
  EXPECT_TRUE(clickReachesPanel(inside));

  panel.fadeOut(std::chrono::milliseconds(30), [&] { ++faded; });
  panel_.reset();
  host().runFor(std::chrono::milliseconds(60));
  EXPECT_EQ(faded, 1);
}

TEST_P(PanelsContract, ScreensLieInOnePlaneThatBeginsAtThePrimaryOne) {
  const std::vector<Screen> screens = host().screens().screens();
  ASSERT_FALSE(screens.empty());
  EXPECT_EQ(screens.front().frame.origin, Point{});
  for (const Screen& screen : screens) {
    const Rect& visible = screen.visibleFrame;
    EXPECT_GT(visible.size.width * visible.size.height, 0);
    EXPECT_TRUE(screen.frame.contains(visible.origin));
    EXPECT_LE(visible.maxX(), screen.frame.maxX());
    EXPECT_LE(visible.maxY(), screen.frame.maxY());
  }
  EXPECT_EQ(host().screens().mainScreen(), screens.front());
}

}  // namespace quillo::contracts
