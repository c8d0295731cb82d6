// What every desktop's windows keep.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "contracts/support/contract_host.h"
#include "contracts/support/test_content.h"
#include "platform/application.h"
#include "platform/panels.h"
#include "platform/windows.h"

namespace quillo::contracts {

// The desktop has another program, which has the focus.
class WindowsHost : public ContractHost {
 public:
  virtual Windows& windows() = 0;
  virtual Panels& panels() = 0;
  virtual Application& application() = 0;
  virtual bool programHasFocus() = 0;
  // The user; what it leads to happens later.
  virtual void press(KeyEquivalent key) = 0;
  virtual void clickCloseButton() = 0;
  virtual void switchToProgram() = 0;
  // Until the desktop has done what it was asked.
  virtual void settle() = 0;
};

class WindowsContract : public PortContract<WindowsHost> {
 protected:
  void make() {
    window_ = host().windows().make({.identifier = "quillo-test",
                                     .title = words("Test"),
                                     .minimumSize = {400, 300},
                                     .idealSize = {500, 350}},
                                    content_,
                                    {.closed = [this] { ++closed_; },
                                     .keyChanged = [this] { keys_.push_back(window_->isKey()); }});
  }
  void show() {
    window_->makeKeyAndOrderFront();
    EXPECT_TRUE(becomesKey(true));
  }
  // And the owner has been told.
  bool becomesKey(bool isKey) {
    const auto isTold = [&] {
      return window_->isKey() == isKey && !keys_.empty() && keys_.back() == isKey;
    };
    if (!host().runUntil(isTold)) return false;
    host().settle();
    return host().runUntil(isTold);
  }
  bool comesBackToProgram() {
    return becomesKey(false) && host().runUntil([&] { return host().programHasFocus(); });
  }

  TestContent content_;
  TestContent sheet_;
  std::unique_ptr<Window> window_;
  int closed_ = 0;
  std::vector<bool> keys_;
};

TEST_P(WindowsContract, AWindowTakesTheKeyboardAndGivesItBack) {
  make();
  EXPECT_FALSE(window_->isVisible());
  EXPECT_FALSE(host().application().hasVisibleWindows());
  EXPECT_TRUE(host().programHasFocus());

  show();
  EXPECT_TRUE(window_->isVisible());
  EXPECT_TRUE(host().application().hasVisibleWindows());
  host().press(KeyEquivalent::defaultAction);
  ASSERT_TRUE(host().runUntil([&] { return content_.pressed().size() == 1; }));
  host().switchToProgram();
  EXPECT_TRUE(comesBackToProgram());
  EXPECT_TRUE(window_->isVisible());

  show();
  const auto panel = host().panels().make({{300, 80}, PanelStyle::dialog}, sheet_);
  panel->makeKeyAndOrderFront();
  ASSERT_TRUE(becomesKey(false));
  panel->orderOut();
  ASSERT_TRUE(becomesKey(true));

  window_->orderOut();
  EXPECT_TRUE(comesBackToProgram());
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(closed_, 0);
  EXPECT_THAT(keys_, testing::ElementsAre(true, false, true, false, true, false));
}

TEST_P(WindowsContract, TheUserClosesItAndTheApplicationBringsItBack) {
  make();
  show();
  host().clickCloseButton();
  ASSERT_TRUE(host().runUntil([&] { return closed_ == 1; }));
  EXPECT_FALSE(window_->isVisible());
  EXPECT_FALSE(host().application().hasVisibleWindows());
  EXPECT_TRUE(comesBackToProgram());

  host().application().orderMainWindowsFront();
  ASSERT_TRUE(becomesKey(true));
  EXPECT_TRUE(host().application().hasVisibleWindows());
  window_.reset();
  EXPECT_FALSE(host().application().hasVisibleWindows());
  EXPECT_TRUE(host().runUntil([&] { return host().programHasFocus(); }));
  EXPECT_EQ(closed_, 1);
}

TEST_P(WindowsContract, ASheetHasTheKeysUntilItEnds) {
  make();
  show();
  window_->beginSheet(sheet_);
  EXPECT_TRUE(window_->hasSheet());
  host().press(KeyEquivalent::defaultAction);
  ASSERT_TRUE(host().runUntil([&] { return sheet_.pressed().size() == 1; }));
  // A window with a sheet does not close.
  host().clickCloseButton();
  ASSERT_TRUE(host().runUntil([&] { return sheet_.pressed().size() == 2; }));
  EXPECT_THAT(sheet_.pressed(), testing::ElementsAre("return", "escape"));
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(closed_, 0);
  EXPECT_THAT(content_.pressed(), testing::IsEmpty());

  window_->endSheet();
  EXPECT_FALSE(window_->hasSheet());
  host().press(KeyEquivalent::cancelAction);
  ASSERT_TRUE(host().runUntil([&] { return content_.pressed().size() == 1; }));
  TestContent other;
  window_->setContent(other);
  host().press(KeyEquivalent::defaultAction);
  ASSERT_TRUE(host().runUntil([&] { return other.pressed().size() == 1; }));
  window_.reset();
}

TEST_P(WindowsContract, TheFrameIsRememberedAndNeverTooSmall) {
  make();
  EXPECT_EQ(window_->frame().size, (Size{500, 350}));
  constexpr Rect chosen{{120, 90}, {640, 420}};
  show();
  window_->setFrame(chosen);
  ASSERT_TRUE(host().runUntil([&] { return window_->frame() == chosen; }));
  window_.reset();
  make();
  EXPECT_EQ(window_->frame(), chosen);
  show();
  ASSERT_TRUE(host().runUntil([&] { return window_->frame() == chosen; }));
  window_->setFrame({{120, 90}, {50, 50}});
  EXPECT_TRUE(host().runUntil([&] { return window_->frame().size == Size{400, 300}; }));
  // Where no screen is any more.
  window_->setFrame({{9000, 9000}, {500, 350}});
  window_.reset();
  make();
  EXPECT_LT(window_->frame().maxX(), 5000);
  EXPECT_LT(window_->frame().maxY(), 5000);
}

}  // namespace quillo::contracts
