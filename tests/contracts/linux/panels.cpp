// The real desktop under the suite of panels and screens, and what it promises beyond.
#include "contracts/linux/linux_plain_views.h"
#include "contracts/linux/linux_window_below.h"
#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/panels_contract.h"
#include "hosts/linux/qt/qt_panels.h"
#include "hosts/linux/qt/qt_screens.h"

namespace quillo::contracts {
namespace {

using linux_host::Ground;

class LinuxPanelsHost final : public LinuxContractHost<PanelsHost> {
 public:
  Panels& panels() override { return panels_; }
  Screens& screens() override { return screens_; }
  bool programHasFocus() override { return below_.hasFocus(); }
  int clicksOfProgram() override { return below_.clicks(); }
  int keysOfProgram() override { return below_.keys(); }
  void click(Point place) override {
    clickAt(below_.connection(), linux_host::fromPlane({place, {}}).topLeft());
  }
  void press(KeyEquivalent key) override {
    const Key keyCode = key == KeyEquivalent::defaultAction ? Key::returnKey : Key::escape;
    keyboard_.change(keyCode, KeyDirection::down);
    runFor(KeyboardHost::shortPress);
    keyboard_.change(keyCode, KeyDirection::up);
  }

  WindowBelow& below() { return below_; }
  PlainViews& views() { return views_; }

 private:
  PlainViews views_;
  linux_host::QtPanels panels_{views_};
  linux_host::QtScreens screens_;
  WindowBelow below_;
  PhysicalKeyboard keyboard_{below_.connection()};
};

INSTANTIATE_TEST_SUITE_P(RealDesktop, PanelsContract, hostedBy<LinuxPanelsHost>());

class LinuxPanels : public testing::Test {
 protected:
  LinuxPanels() {
    panel_->setFrameOrigin({200, 100});
    panel_->orderFrontRegardless();
  }
  bool runUntil(const std::function<bool()>& holds) {
    return host_.runUntil(holds, std::chrono::seconds(20));
  }
  bool clickReachesPanel(Point point = {350, 140}) {
    return contracts::clickReachesPanel(host_, content_, point);
  }

  LinuxPanelsHost host_;
  TestContent content_;
  std::unique_ptr<Panel> panel_ = host_.panels().make({{300, 80}, PanelStyle::status}, content_);
};

TEST_F(LinuxPanels, PanelsLieAboveAFullScreenWindowAndStayOnEveryWorkspace) {
  auto& connection = host_.below().connection();
  host_.below().setFullScreen();
  const auto window = connection.word(connection.root(), "_NET_ACTIVE_WINDOW").value();
  ASSERT_TRUE(runUntil([&] {
    return connection.word(window, "_NET_WM_STATE") == connection.atom("_NET_WM_STATE_FULLSCREEN");
  }));
  EXPECT_TRUE(clickReachesPanel());
  panel_->orderOut();
  panel_->orderFrontRegardless();
  EXPECT_TRUE(clickReachesPanel());
  EXPECT_TRUE(host_.programHasFocus());

  const Point onDialog{350, 440};
  const auto dialog = host_.panels().make({{300, 80}, PanelStyle::dialog}, content_);
  dialog->setFrameOrigin({200, 400});
  dialog->makeKeyAndOrderFront();
  ASSERT_TRUE(runUntil([&] { return !host_.programHasFocus(); }));
  EXPECT_TRUE(clickReachesPanel(onDialog));
  dialog->orderOut();  // what the window manager was told does not outlast a hide
  dialog->makeKeyAndOrderFront();
  const auto comesToWorkspace = [&](std::uint32_t number) {
    host_.below().switchToWorkspace(number);
    return runUntil(
        [&] { return connection.word(connection.root(), "_NET_CURRENT_DESKTOP") == number; });
  };
  ASSERT_TRUE(comesToWorkspace(1));
  EXPECT_TRUE(clickReachesPanel());
  EXPECT_TRUE(clickReachesPanel(onDialog));
  ASSERT_TRUE(comesToWorkspace(0));
  EXPECT_TRUE(clickReachesPanel());
}

TEST_F(LinuxPanels, ACompositorMayComeAndGo) {
  EXPECT_EQ(host_.views().lastGround, Ground::opaque);
  auto& connection = host_.below().connection();
  const xcb_atom_t selection = connection.atom("_NET_WM_CM_S0");
  const xcb_window_t compositor = connection.createHiddenWindow(0);
  xcb_set_selection_owner(connection.get(), compositor, selection, XCB_CURRENT_TIME);
  connection.flush();
  const auto groundBecomes = [&](Ground ground) {
    return runUntil([&] { return host_.views().lastGround == ground; });
  };
  ASSERT_TRUE(groundBecomes(Ground::translucent));
  // There is room for a shadow around the panel now; clicks there reach what is below.
  EXPECT_EQ(panel_->frame(), (Rect{{200, 100}, {300, 80}}));
  EXPECT_TRUE(runUntil([&] { return clickReachesPanel(); }));
  EXPECT_FALSE(clickReachesPanel({350, 190}));
  EXPECT_FALSE(clickReachesPanel({190, 140}));

  xcb_destroy_window(connection.get(), compositor);
  connection.flush();
  ASSERT_TRUE(groundBecomes(Ground::opaque));
  EXPECT_EQ(panel_->frame(), (Rect{{200, 100}, {300, 80}}));
}

// A bar at the bottom of the desktop, from one column to another.
class BottomBar {
 public:
  static constexpr std::uint32_t thickness = 40;

  BottomBar(linux_host::X11Connection& connection, const QRect& desktop, std::uint32_t first,
            std::uint32_t last)
      : connection_(connection), window_(xcb_generate_id(connection.get())) {
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window_, connection.root(),
                      static_cast<std::int16_t>(first),
                      static_cast<std::int16_t>(desktop.height() - 40),
                      static_cast<std::uint16_t>(last - first + 1), thickness, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t dock = connection.atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window_,
                        connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
    const std::uint32_t strut[] = {0, 0, 0, thickness, 0, 0, 0, 0, 0, 0, first, last};
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window_,
                        connection.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32, 12, strut);
    xcb_map_window(connection.get(), window_);
    connection.flush();
  }
  BottomBar(const BottomBar&) = delete;
  BottomBar& operator=(const BottomBar&) = delete;
  ~BottomBar() {
    xcb_destroy_window(connection_.get(), window_);
    connection_.flush();
  }

 private:
  linux_host::X11Connection& connection_;
  xcb_window_t window_;
};

TEST_F(LinuxPanels, ScreensComeAndGoEachWithItsBars) {
  const Screens& screens = host_.screens();
  const std::vector<Screen> before = screens.screens();
  const Rect whole = before.front().frame;
  const QRect desktop = linux_host::fromPlane(whole);
  const int half = desktop.width() / 2;
  {
    const TwoScreens two(host_.below().connection());
    ASSERT_TRUE(runUntil([&] { return screens.screens().size() == 2; }));
    const Size size{whole.size.width / 2, whole.size.height};
    EXPECT_EQ(screens.screens()[0].frame, (Rect{{0, 0}, size}));
    EXPECT_EQ(screens.screens()[1].frame, (Rect{{size.width, 0}, size}));

    // The one where the user types.
    host_.below().moveTo({half + 50, 100, 300, 200});
    EXPECT_EQ(screens.mainScreen(), screens.screens()[1]);
    host_.below().moveTo({half - 200, 100, 300, 200});
    EXPECT_EQ(screens.mainScreen(), screens.screens()[0]);

    const BottomBar bar(host_.below().connection(), desktop, half, desktop.width() - 1);
    EXPECT_TRUE(
        runUntil([&] { return screens.screens()[1].visibleFrame.minY() == BottomBar::thickness; }));
    EXPECT_EQ(screens.screens()[0].visibleFrame, screens.screens()[0].frame);
  }
  EXPECT_TRUE(runUntil([&] { return screens.screens() == before; }));
}

}  // namespace
}  // namespace quillo::contracts
