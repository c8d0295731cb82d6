// The parts of an X11 desktop: applications, keys and the clipboard.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/log.h"
#include "base/main_thread.h"
#include "platform/event_monitors.h"
#include "platform/event_taps.h"
#include "platform/hid_keyboards.h"
#include "platform/hot_keys.h"
#include "platform/key_poster.h"
#include "platform/keyboard_state.h"
#include "platform/mouse_monitors.h"
#include "platform/pasteboard.h"
#include "platform/workspace.h"

namespace quillo::linux_host {

class X11Connection;
class X11FrontWindow;
class X11LastInput;
class X11Windows;

// Main thread, made after QCoreApplication. What the ports gave out (registrations, monitors,
// managers) may outlive the desktop, but ends with it.
class X11Desktop {
 public:
  struct Arguments {
    MainThread& mainThread;
    Log& log;
    std::optional<std::string> ownBundleIdentifier;
    // Called once, in the event loop, when the server has gone. Nothing works any more then.
    std::function<void()> lost;
    // Whether the pointer is over a window of this program, which the toolkit knows.
    std::function<bool()> isPointerOverOwnWindow = [] { return false; };
  };
  struct Opened {
    std::unique_ptr<X11Desktop> desktop;
    std::string refusal;  // a sentence for the user when there is no desktop
  };

  // The references of the arguments outlive the desktop.
  static Opened open(Arguments arguments);
  ~X11Desktop();

  Workspace& workspace();
  HotKeys& hotKeys();
  EventTaps& eventTaps();
  EventMonitors& eventMonitors();
  HIDKeyboards& hidKeyboards();
  KeyPoster& keyPoster();
  KeyboardState& keyboardState();
  MouseMonitors& mouseMonitors();
  // Bits of mouse_buttons, as the server tells them.
  std::uint32_t pressedMouseButtons() const;
  Pasteboard& pasteboard();
  // The text that is selected somewhere: X's primary selection. Blocks for two seconds at most.
  std::optional<std::string> selectedText() const;

  // For the other parts of this host.
  X11Connection& connection();
  X11Windows& windows();
  X11FrontWindow& frontWindow();
  X11LastInput& lastInput();

 private:
  struct Parts;
  explicit X11Desktop(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillo::linux_host
