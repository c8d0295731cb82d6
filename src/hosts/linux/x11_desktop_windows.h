// The windows of an X11 desktop, as accessibility asks for them.
#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string>

#include "hosts/linux/atspi/front_window.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/keys/x11_last_input.h"
#include "hosts/linux/x11/windows/x11_front_window.h"
#include "hosts/linux/x11/windows/x11_windows.h"
#include "hosts/linux/x11/x11_desktop.h"

namespace quillo::linux_host {

// Main thread.
class X11DesktopWindows final : public DesktopWindows {
 public:
  // `desktop` outlives this.
  explicit X11DesktopWindows(X11Desktop& desktop)
      : connection_(desktop.connection()),
        windows_(desktop.windows()),
        front_(desktop.frontWindow()),
        lastInput_(desktop.lastInput()) {}

  std::optional<DesktopWindow> front() override;
  std::optional<DesktopWindow> at(std::int32_t x, std::int32_t y) override;
  std::string title(const DesktopWindow& window) override;
  MonotonicTime lastInput() override;

 private:
  std::optional<DesktopWindow> describe(xcb_window_t window);

  X11Connection& connection_;
  X11Windows& windows_;
  X11FrontWindow& front_;
  X11LastInput& lastInput_;
};

}  // namespace quillo::linux_host
