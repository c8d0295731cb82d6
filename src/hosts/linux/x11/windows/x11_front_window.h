// The window in front, known from what the server tells of it: only what has changed is asked for.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "base/main_thread.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"
#include "hosts/linux/x11/windows/x11_windows.h"

namespace quillo::linux_host {

// Main thread. A question takes what the server has sent so far and no round trip, unless something
// has changed. Without a window manager nobody tells, and every question is asked.
class X11FrontWindow {
 public:
  struct Place {
    std::int32_t x = 0;  // of the window's contents, on the screen
    std::int32_t y = 0;
    friend bool operator==(const Place&, const Place&) = default;
  };

  // The references outlive this.
  X11FrontWindow(MainThread& mainThread, X11Connection& connection, X11EventSource& events,
                 X11Windows& windows);

  // Nothing when no application is in front.
  std::optional<xcb_window_t> window();
  // Null as well; good until the next question.
  const WindowApplication* application();
  std::optional<Place> place();
  // When another window came to the front, or this one has moved, as far as was noticed.
  MonotonicTime changedAt() const { return changedAt_; }

 private:
  std::optional<xcb_window_t> look();
  void watch(xcb_window_t& watched, xcb_window_t window, std::uint32_t events);
  void forget();
  void handle(const xcb_generic_event_t& event);
  void propertyChanged(xcb_window_t window, xcb_atom_t name);
  void structureChanged(xcb_window_t window, bool isGone);

  MainThread& mainThread_;
  X11Connection& connection_;
  X11EventSource& events_;
  X11Windows& windows_;
  const xcb_atom_t activeWindow_;
  const xcb_atom_t windowManagerCheck_;
  const xcb_atom_t toolkitIdentifier_;
  bool isCurrent_ = false;  // nothing was told that makes the window another one
  xcb_window_t manager_ = XCB_WINDOW_NONE;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  std::optional<WindowApplication> application_;
  std::optional<Place> place_;
  MonotonicTime changedAt_ = MonotonicTime::distantPast();
  std::shared_ptr<void> subscription_;
};

}  // namespace quillo::linux_host
