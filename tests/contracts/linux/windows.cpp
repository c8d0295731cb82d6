// The real desktop under the suite of windows.
#include <QGuiApplication>

#include "contracts/linux/linux_plain_views.h"
#include "contracts/linux/linux_window_below.h"
#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/windows_contract.h"
#include "hosts/linux/posix/json_user_defaults.h"
#include "hosts/linux/posix/system_clock.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/qt/qt_panels.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/qt/qt_windows.h"

namespace quillo::contracts {
namespace {

class LinuxWindowsHost final : public LinuxContractHost<WindowsHost> {
 public:
  Windows& windows() override { return windows_; }
  Panels& panels() override { return panels_; }
  Application& application() override { return application_; }
  bool programHasFocus() override { return below_.hasFocus(); }
  void press(KeyEquivalent key) override {
    const Key keyCode = key == KeyEquivalent::defaultAction ? Key::returnKey : Key::escape;
    keyboard_.change(keyCode, KeyDirection::down);
    keyboard_.change(keyCode, KeyDirection::up);
  }
  void clickCloseButton() override {
    const auto window = static_cast<xcb_window_t>(QGuiApplication::focusWindow()->winId());
    tellWindowManager(below_.connection(), window, "_NET_CLOSE_WINDOW", XCB_CURRENT_TIME);
  }
  void switchToProgram() override { below_.comeToFront(); }
  void settle() override { awaitWindowManager(below_.connection()); }

 private:
  TemporaryFolder folder_;
  LinesLog log_;
  linux_host::SystemClock clock_;
  linux_host::JsonUserDefaults defaults_{folder_.path() / "settings.json", mainThread(), clock_,
                                         log_};
  PlainViews views_;
  linux_host::QtScreens screens_;
  linux_host::QtWindows windows_{views_, defaults_, screens_};
  linux_host::QtPanels panels_{views_};
  linux_host::QtApplication application_{{}, mainThread(), &windows_};
  WindowBelow below_;
  PhysicalKeyboard keyboard_{below_.connection()};
};

INSTANTIATE_TEST_SUITE_P(RealDesktop, WindowsContract, hostedBy<LinuxWindowsHost>());

}  // namespace
}  // namespace quillo::contracts
