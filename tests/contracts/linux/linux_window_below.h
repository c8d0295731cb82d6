// Another program on the real desktop that covers the screen, and the user's pointer.
#pragma once

#include <xcb/xcb.h>

#include <QPoint>
#include <QRect>
#include <memory>
#include <string_view>
#include <vector>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::contracts {

// Its window has a connection of its own, so for the server and the window manager it is another
// program, though it lives in this process.
class WindowBelow {
 public:
  // Returns when the window is in front.
  WindowBelow();
  WindowBelow(const WindowBelow&) = delete;
  WindowBelow& operator=(const WindowBelow&) = delete;

  // It has the focus by the server as well as by the window manager.
  bool hasFocus();
  int clicks();
  int keys();

  // In pixels from the top left of the desktop. Returns when it lies there.
  void moveTo(const QRect& place);
  void setFullScreen();
  // The user switches to it.
  void comeToFront();
  // The user goes to that workspace of the desktop.
  void switchToWorkspace(std::uint32_t number);
  linux_host::X11Connection& connection() { return *connection_; }

 private:
  QRect place();
  void countEvents();

  std::unique_ptr<linux_host::X11Connection> connection_ = linux_host::X11Connection::open();
  xcb_window_t window_;
  int clicks_ = 0;
  int keys_ = 0;
};

// Two screens side by side, the left one first, in place of the one that there is.
class TwoScreens {
 public:
  explicit TwoScreens(linux_host::X11Connection& connection);
  TwoScreens(const TwoScreens&) = delete;
  TwoScreens& operator=(const TwoScreens&) = delete;
  ~TwoScreens();

 private:
  void add(std::string_view name, const QRect& place, const std::vector<std::uint32_t>& outputs);

  linux_host::X11Connection& connection_;
  std::vector<xcb_atom_t> names_;
};

// The user clicks at a place of the screen, in pixels from its top left.
void clickAt(linux_host::X11Connection& connection, QPoint place);

}  // namespace quillo::contracts
