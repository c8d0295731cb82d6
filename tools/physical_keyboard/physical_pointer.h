// The mouse of a person at an X server.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <set>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo {

// The buttons are those of the server's own mouse. For one thread, that of its connection; throws
// std::runtime_error when the server has no mouse or refuses.
class PhysicalPointer {
 public:
  static constexpr std::uint8_t left = 1;
  static constexpr std::uint8_t right = 3;
  static constexpr std::uint8_t wheelDown = 5;

  // `connection` outlives this.
  explicit PhysicalPointer(linux_host::X11Connection& connection);
  PhysicalPointer(const PhysicalPointer&) = delete;
  PhysicalPointer& operator=(const PhysicalPointer&) = delete;
  // Lets the buttons go that are still down.
  ~PhysicalPointer();

  // In pixels from the top left of the desktop. Returns when the server has it, like the others.
  void moveTo(int x, int y);
  void press(std::uint8_t button);
  void release(std::uint8_t button);

 private:
  bool send(std::uint8_t button, int type);

  linux_host::X11Connection& connection_;
  std::uint8_t device_ = 0;
  std::uint8_t firstEvent_ = 0;
  std::set<std::uint8_t> down_;
};

}  // namespace quillo
