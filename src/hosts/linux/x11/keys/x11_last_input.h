// When the user last touched a key or the pointer.
#pragma once

#include <xcb/sync.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "base/main_thread.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"

namespace quillo::linux_host {

// Main thread. The server tells when the user has been still for a while and when that ends, and
// nothing of what lies between: two messages for a sentence that is typed. Nothing is selected
// before the first question, and later ones take no round trip.
class X11LastInput {
 public:
  static constexpr Duration stillness = std::chrono::milliseconds(400);

  // The references outlive this.
  X11LastInput(MainThread& mainThread, X11Connection& connection, X11EventSource& events);

  // Now, while the user has not been still for that long, or where the server does not tell.
  MonotonicTime at();

 private:
  void listen();
  std::optional<xcb_sync_counter_t> idleCounter();
  void setAlarm(xcb_sync_counter_t counter, xcb_sync_testtype_t when);
  void handle(const xcb_generic_event_t& event);
  void judge(const xcb_sync_int64_t& idleTime);

  MainThread& mainThread_;
  X11Connection& connection_;
  X11EventSource& events_;
  std::uint8_t alarmEvent_ = 0;  // 0 before the first question
  std::optional<MonotonicTime> stillSince_;
  std::shared_ptr<void> subscription_;
};

}  // namespace quillo::linux_host
