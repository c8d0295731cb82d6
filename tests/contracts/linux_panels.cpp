// The real desktop under the suite of panels and screens, and what it promises beyond.
#include <QMouseEvent>
#include <QRasterWindow>

#include "contracts/linux_window_below.h"
#include "contracts/linux_x11_host.h"
#include "contracts/panels_contract.h"
#include "hosts/linux/qt_panels.h"
#include "hosts/linux/qt_screens.h"

namespace quillo::contracts {
namespace {

using linux_host::Ground;

// A view that is all one control.
class PlainView final : public linux_host::PanelView {
 public:
  PlainView(PanelContent& content, Ground& lastGround)
      : window_(content), lastGround_(lastGround) {}

  QWindow& window() override { return window_; }
  QSizeF fittingSize() override { return {120, 44}; }
  QMargins margins() const override { return {margin_, margin_, margin_, margin_}; }
  QRegion shape() const override {
    return QRect(QPoint(), window_.size()).marginsRemoved(margins());
  }
  void setShapeChanged(std::function<void()> changed) override {
    window_.resized = std::move(changed);
  }
  void setGround(Ground ground) override {
    lastGround_ = ground;
    margin_ = ground == Ground::translucent ? 24 : 0;
  }
  void takeFocus() override {}

 private:
  class Window final : public QRasterWindow {
   public:
    explicit Window(PanelContent& content) : content_(content) {}
    std::function<void()> resized;

   protected:
    void mousePressEvent(QMouseEvent*) override {
      QMetaObject::invokeMethod(this, content_.controls().front().press, Qt::QueuedConnection);
    }
    void resizeEvent(QResizeEvent*) override {
      if (resized) resized();
    }

   private:
    PanelContent& content_;
  };

  Window window_;
  Ground& lastGround_;
  int margin_ = 0;
};

class PlainViews final : public linux_host::Views {
 public:
  std::unique_ptr<linux_host::PanelView> makePanelView(PanelContent& content) override {
    return std::make_unique<PlainView>(content, lastGround);
  }
  QIcon barIcon(const std::string&) override { return {}; }

  Ground lastGround = Ground::translucent;
};

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
    const std::int64_t keyCode = key == KeyEquivalent::defaultAction ? 36 : 53;
    keyboard_.change(keyCode, KeyDirection::down);
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

INSTANTIATE_TEST_SUITE_P(RealDesktop, PanelsContract, (onX11<PanelsHost, LinuxPanelsHost>()),
                         hostName<PanelsHost>);

class LinuxPanels : public testing::Test {
 protected:
  LinuxPanels() {
    panel_->setFrameOrigin({200, 100});
    panel_->orderFrontRegardless();
  }
  bool clickReachesPanel(Point point = {350, 140}) {
    const std::size_t before = content_.pressed().size();
    const int below = host_.clicksOfProgram();
    host_.click(point);
    EXPECT_TRUE(host_.runUntil(
        [&] { return content_.pressed().size() > before || host_.clicksOfProgram() > below; },
        std::chrono::seconds(20)));
    return content_.pressed().size() > before;
  }

  LinuxPanelsHost host_;
  TestContent content_;
  std::unique_ptr<Panel> panel_ = host_.panels().make({{300, 80}, PanelStyle::status}, content_);
};

TEST_F(LinuxPanels, AStatusPanelLiesAboveAFullScreenWindow) {
  host_.below().setFullScreen();
  const xcb_atom_t fullScreen = host_.below().connection().atom("_NET_WM_STATE_FULLSCREEN");
  ASSERT_TRUE(host_.runUntil(
      [&] {
        auto& connection = host_.below().connection();
        const auto window = connection.word(connection.root(), "_NET_ACTIVE_WINDOW");
        return window && connection.word(*window, "_NET_WM_STATE") == fullScreen;
      },
      std::chrono::seconds(20)));
  EXPECT_TRUE(clickReachesPanel());
  panel_->orderOut();
  panel_->orderFrontRegardless();
  EXPECT_TRUE(clickReachesPanel());
  EXPECT_TRUE(host_.programHasFocus());
}

TEST_F(LinuxPanels, AStatusPanelStaysWhenTheUserChangesTheWorkspace) {
  auto& connection = host_.below().connection();
  const auto isOn = [&](std::uint32_t workspace) {
    return host_.runUntil(
        [&] { return connection.word(connection.root(), "_NET_CURRENT_DESKTOP") == workspace; },
        std::chrono::seconds(20));
  };
  host_.below().switchToWorkspace(1);
  ASSERT_TRUE(isOn(1));
  EXPECT_TRUE(clickReachesPanel());
  host_.below().switchToWorkspace(0);
  ASSERT_TRUE(isOn(0));
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
    return host_.runUntil([&] { return host_.views().lastGround == ground; },
                          std::chrono::seconds(20));
  };
  ASSERT_TRUE(groundBecomes(Ground::translucent));
  // There is room for a shadow around the panel now; clicks there reach what is below.
  EXPECT_EQ(panel_->frame(), (Rect{{200, 100}, {300, 80}}));
  EXPECT_TRUE(host_.runUntil([&] { return clickReachesPanel(); }, std::chrono::seconds(20)));
  EXPECT_FALSE(clickReachesPanel({350, 190}));
  EXPECT_FALSE(clickReachesPanel({190, 140}));

  xcb_destroy_window(connection.get(), compositor);
  connection.flush();
  ASSERT_TRUE(groundBecomes(Ground::opaque));
  EXPECT_EQ(panel_->frame(), (Rect{{200, 100}, {300, 80}}));
}

TEST_F(LinuxPanels, TheVisibleFrameLeavesTheDesktopsBarsOut) {
  const Screen before = host_.screens().screens().front();
  auto& connection = host_.below().connection();
  const xcb_window_t bar = xcb_generate_id(connection.get());
  const auto width = static_cast<std::uint16_t>(before.frame.size.width);
  const auto height = static_cast<std::int16_t>(before.frame.size.height);
  constexpr std::uint32_t thickness = 40;
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, bar, connection.root(), 0,
                    static_cast<std::int16_t>(height - 40), width, thickness, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  const xcb_atom_t dock = connection.atom("_NET_WM_WINDOW_TYPE_DOCK");
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, bar,
                      connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
  const std::uint32_t bottom[] = {0, 0, 0, thickness};
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, bar,
                      connection.atom("_NET_WM_STRUT"), XCB_ATOM_CARDINAL, 32, 4, bottom);
  xcb_map_window(connection.get(), bar);
  connection.flush();
  const auto visibleBecomes = [&](double bottomEdge) {
    return host_.runUntil(
        [&] { return host_.screens().screens().front().visibleFrame.minY() == bottomEdge; },
        std::chrono::seconds(20));
  };
  EXPECT_TRUE(visibleBecomes(thickness));
  EXPECT_EQ(host_.screens().screens().front().frame, before.frame);
  xcb_destroy_window(connection.get(), bar);
  connection.flush();
  EXPECT_TRUE(visibleBecomes(before.visibleFrame.minY()));
}

}  // namespace
}  // namespace quillo::contracts
