// The windows of an X11 desktop, as accessibility asks for them.
#pragma once

#include <xcb/xcb.h>

#include <memory>
#include <optional>
#include <string>

#include "base/main_thread.h"
#include "hosts/linux/atspi/front_window.h"
#include "hosts/linux/session/desktop_entries.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/windows/x11_windows.h"

namespace quillo::linux_host {

// Main thread. Connects when it is first asked, and selects no events: it wakes nobody up.
class X11DesktopWindows final : public DesktopWindows {
 public:
  explicit X11DesktopWindows(MainThread& mainThread) : mainThread_(mainThread) {}

  std::optional<DesktopWindow> front() override;
  std::optional<DesktopWindow> at(std::int32_t x, std::int32_t y) override;
  std::string title(const DesktopWindow& window) override;
  Duration sinceLastInput() override;

 private:
  // What one round trip tells; good for the few milliseconds of one look.
  struct Sight {
    std::optional<DesktopWindow> front;
    MonotonicTime lastInput;
    MonotonicTime seenAt = MonotonicTime::distantPast();
  };

  bool isConnected();
  const Sight& look();
  std::optional<DesktopWindow> describe(xcb_window_t window);

  MainThread& mainThread_;
  std::unique_ptr<X11Connection> connection_;
  DesktopEntries entries_{{}, "C"};  // nobody asks this for names
  std::unique_ptr<X11Windows> windows_;
  bool tellsIdleTime_ = false;
  Sight sight_;
};

}  // namespace quillo::linux_host
