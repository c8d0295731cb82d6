// The keys of a person at an X server.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <set>

#include "hosts/linux/x11/connection/x11_connection.h"
#include "platform/key_codes.h"
#include "platform/key_event.h"

namespace quillo {

// The server's own device of this type (of XInput), and not XTest's; 0 when there is none.
std::uint8_t physicalDevice(linux_host::X11Connection& connection, std::uint16_t type);

// The server's own keyboard. Programs tell its keys from those of XTest's keyboard, which are
// synthetic to them; and a key that it holds down stays down whatever synthetic keys do. For one
// thread, that of its connection; throws std::runtime_error when the server has no keyboard or
// refuses a key.
class PhysicalKeyboard {
 public:
  // `connection` outlives this.
  explicit PhysicalKeyboard(linux_host::X11Connection& connection);
  PhysicalKeyboard(const PhysicalKeyboard&) = delete;
  PhysicalKeyboard& operator=(const PhysicalKeyboard&) = delete;
  // Lets every key go that is still down, and caps lock.
  ~PhysicalKeyboard();

  // Returns when the server has the key.
  void change(Key key, KeyDirection direction);

 private:
  bool send(xcb_keycode_t keycode, KeyDirection direction);

  linux_host::X11Connection& connection_;
  std::uint8_t device_ = 0;
  std::uint8_t firstEvent_ = 0;
  std::set<xcb_keycode_t> down_;
};

}  // namespace quillo
