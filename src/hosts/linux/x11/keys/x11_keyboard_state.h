// What the keyboard is doing now.
#pragma once

#include "hosts/linux/x11/keys/x11_hot_keys.h"
#include "hosts/linux/x11/keys/x11_keyboard.h"
#include "platform/keyboard_state.h"

namespace quillo::linux_host {

// Main thread; each question is one round trip to the server.
class X11KeyboardState final : public KeyboardState {
 public:
  // Both outlive this.
  X11KeyboardState(X11Keyboard& keyboard, X11HotKeys& hotKeys)
      : keyboard_(keyboard), hotKeys_(hotKeys) {}

  std::uint64_t modifierFlags() const override { return keyboard_.modifierFlags(); }
  // X11 has no secure input, but a program that grabs the keyboard (a password question, a lock
  // screen, an open menu) receives every keystroke, a synthetic paste too.
  bool isSecureEventInputEnabled() const override { return hotKeys_.isKeyboardTaken(); }
  std::uint64_t editingModifier() const override { return event_flags::control; }

 private:
  X11Keyboard& keyboard_;
  X11HotKeys& hotKeys_;
};

}  // namespace quillo::linux_host
