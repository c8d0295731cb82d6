// The mouse of a real X server.
#include "contracts/linux/linux_plain_views.h"
#include "contracts/linux/linux_window_below.h"
#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/mouse_contract.h"
#include "contracts/support/test_content.h"
#include "hosts/linux/qt/qt_panels.h"
#include "hosts/linux/qt/qt_pointer.h"
#include "hosts/linux/qt/qt_screens.h"
#include "physical_pointer.h"

namespace quillo::contracts {
namespace {

class LinuxMouseHost final : public LinuxContractHost<MouseHost> {
 public:
  LinuxMouseHost() {
    panel_->setFrameOrigin({600, 200});
    panel_->orderFrontRegardless();
    moveTo(placeOnPanel());
    EXPECT_TRUE(runUntil(&linux_host::isPointerOverOwnWindow, std::chrono::seconds(10)));
  }
  MouseMonitors& mouseMonitors() override { return opened_.desktop->mouseMonitors(); }
  Pointer& pointer() override { return pointer_; }
  void moveTo(Point place) override {
    const QPoint corner = linux_host::fromPlane({place, {}}).topLeft();
    mouse_.moveTo(corner.x(), corner.y());
  }
  // As long as a person's: what lies under the pointer is looked at when the press is seen.
  void press(std::uint32_t button) override {
    mouse_.press(buttonOf(button));
    runFor(std::chrono::milliseconds(60));
  }
  void release(std::uint32_t button) override { mouse_.release(buttonOf(button)); }
  void turnWheel() override {
    mouse_.press(PhysicalPointer::wheelDown);
    mouse_.release(PhysicalPointer::wheelDown);
    runFor(std::chrono::milliseconds(60));
  }
  Point placeOnPanel() override { return {610, 210}; }

 private:
  static std::uint8_t buttonOf(std::uint32_t button) {
    return button == mouse_buttons::left ? PhysicalPointer::left : PhysicalPointer::right;
  }

  LinesLog log_;
  linux_host::X11Desktop::Opened opened_ = linux_host::X11Desktop::open(
      {this->mainThread(), log_, "ours", {}, &linux_host::isPointerOverOwnWindow});
  linux_host::QtPointer pointer_{[this] { return opened_.desktop->pressedMouseButtons(); }};
  PlainViews views_;
  linux_host::QtPanels panels_{views_};
  TestContent content_;
  WindowBelow below_;
  PhysicalPointer mouse_{below_.connection()};
  std::unique_ptr<Panel> panel_ = panels_.make({{100, 50}, PanelStyle::status}, content_);
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, MouseContract, hostedBy<LinuxMouseHost>());

}  // namespace
}  // namespace quillo::contracts
