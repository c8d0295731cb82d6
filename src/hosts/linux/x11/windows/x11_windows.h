// The applications' windows, by the Extended Window Manager Hints (freedesktop.org).
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>

#include "hosts/linux/session/application_table.h"
#include "hosts/linux/session/desktop_entries.h"
#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// The application that a window belongs to, as the desktop knows it.
struct WindowApplication {
  xcb_window_t window = XCB_WINDOW_NONE;
  std::int32_t processIdentifier = 0;  // 0 when nobody tells
  std::string bundleIdentifier;        // an unlisted application keeps its desktop identifier
  std::string name;
  PasteShortcut pasteShortcut = PasteShortcut::control;
};

// Main thread; a few round trips each.
class X11Windows {
 public:
  // Both outlive this.
  X11Windows(X11Connection& connection, DesktopEntries& entries);

  // The window that the window manager calls active; without a window manager, the one that has
  // the input focus. Nothing when no application is in front.
  std::optional<xcb_window_t> active();
  // The window that vouches for the window manager; nothing when none runs.
  std::optional<xcb_window_t> windowManager();
  // Nothing for a window that has gone.
  std::optional<WindowApplication> application(xcb_window_t window);
  bool exists(xcb_window_t window);
  // The topmost window of the process.
  std::optional<xcb_window_t> windowOf(std::int32_t processIdentifier);
  // 0 when nobody tells.
  std::int32_t processOf(xcb_window_t window);
  void activate(xcb_window_t window);

 private:
  std::optional<xcb_window_t> focused();
  std::optional<std::string> windowClass(xcb_window_t window);
  void sendToRoot(xcb_window_t window, xcb_atom_t message, const std::uint32_t (&data)[5]);

  X11Connection& connection_;
  DesktopEntries& entries_;
  bool canAskForProcesses_;
  xcb_window_t voucher_ = XCB_WINDOW_NONE;  // of the window manager that was last seen
};

}  // namespace quillo::linux_host
