// Where the mouse is, and which of its buttons are down.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace quillo {

// Bits of the pressed buttons.
namespace mouse_buttons {
inline constexpr std::uint32_t left = 1;
inline constexpr std::uint32_t right = 2;
}  // namespace mouse_buttons

// Main thread; no call blocks for longer than a round trip to the window system.
class Pointer {
 public:
  virtual ~Pointer() = default;

  virtual Point location() const = 0;
  // As they are now, whoever's window they were pressed in.
  virtual std::uint32_t pressedButtons() const = 0;
};

}  // namespace quillo
