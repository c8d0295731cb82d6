// What is held on the keyboard now.
#pragma once

#include <cstdint>

#include "platform/key_event.h"

namespace quillo {

// Main thread.
class KeyboardState {
 public:
  virtual ~KeyboardState() = default;
  // Flags of the modifiers that are down now.
  virtual std::uint64_t modifierFlags() const = 0;
  // Whether some application keeps its keystrokes from everybody else.
  virtual bool isSecureEventInputEnabled() const = 0;
  // The flag of the modifier with which the applications of this desktop edit: select all, copy.
  virtual std::uint64_t editingModifier() const { return event_flags::command; }
};

}  // namespace quillo
