// What the keys of the simulated keyboard type, and what its modifiers set.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/key_codes.h"

namespace quillo::simulated {

enum class KeyboardLayout { us, dvorak, russian };

// What the key types without modifiers; nothing for modifiers.
std::optional<std::string> charactersOf(std::int64_t keyCode, KeyboardLayout layout);

// The flag that a modifier sets while it is down, and the device-dependent bit that tells left from
// right. Nothing for other keys and for the locks.
struct ModifierBits {
  std::uint64_t flag = 0;
  std::uint64_t deviceBit = 0;
};
std::optional<ModifierBits> modifierBitsOf(std::int64_t keyCode);

}  // namespace quillo::simulated
