// The user's mouse on an X server.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "base/main_thread.h"
#include "hosts/linux/posix/observer_list.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"
#include "platform/mouse_monitors.h"

namespace quillo::linux_host {

// Main thread. Buttons come as raw events of XInput 2, also while a program holds a grab, and the
// pointer's movement is asked for only while the left button is down. Without monitors nothing is
// connected and nothing wakes up.
class X11Mouse final : public MouseMonitors {
 public:
  // Whether the pointer is over a window of this program.
  using IsOverOwnWindow = std::function<bool()>;

  // `mainThread` and `connection` outlive this.
  X11Mouse(MainThread& mainThread, X11Connection& connection, IsOverOwnWindow isOverOwnWindow)
      : mainThread_(mainThread),
        connection_(connection),
        isOverOwnWindow_(std::move(isOverOwnWindow)) {}

  [[nodiscard]] std::shared_ptr<void> addGlobalMonitor(
      std::vector<MouseEvent::Type> types, std::function<void(const MouseEvent&)> seen) override;

  // Bits of mouse_buttons, from the server: one round trip.
  std::uint32_t pressedButtons() const;

 private:
  // Where raw events arrive; shared by the monitors, and gone with the last of them.
  class RawEvents;

  MainThread& mainThread_;
  X11Connection& connection_;
  IsOverOwnWindow isOverOwnWindow_;
  std::weak_ptr<RawEvents> raw_;
};

}  // namespace quillo::linux_host
