// The chords that the user may choose for cycling through profiles.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/hot_keys.h"
#include "platform/key_codes.h"
#include "state/key_labels.h"

namespace quillo {

struct CycleHotKeyPreset {
  std::int64_t id;
  std::int64_t keyCode;    // virtual key code
  std::int64_t modifiers;  // bits of hot_key_modifiers

  Words label() const { return hotKeyLabel(keyCode, modifiers); }
};

inline constexpr std::array<CycleHotKeyPreset, 3> cycleHotKeyPresets = {{
    {0, codeOf(Key::g), hot_key_modifiers::control},
    {1, codeOf(Key::j), hot_key_modifiers::control},
    {2, codeOf(Key::semicolon), hot_key_modifiers::control},
}};
inline constexpr CycleHotKeyPreset defaultCycleHotKey = cycleHotKeyPresets[0];

constexpr bool isCycleHotKeyPreset(std::int64_t keyCode, std::int64_t modifiers) {
  return std::ranges::any_of(cycleHotKeyPresets, [&](const CycleHotKeyPreset& preset) {
    return preset.keyCode == keyCode && preset.modifiers == modifiers;
  });
}

}  // namespace quillo
