// Chords that the desktop keeps for this program.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "base/result.h"
#include "platform/key_event.h"

namespace quillo {

// Bits of a registered hot key's modifiers.
namespace hot_key_modifiers {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
}  // namespace hot_key_modifiers

struct ModifierForms {
  std::uint64_t eventFlag;
  std::uint32_t hotKeyModifier;
};
inline constexpr ModifierForms modifierForms[] = {
    {event_flags::control, hot_key_modifiers::control},
    {event_flags::option, hot_key_modifiers::option},
    {event_flags::shift, hot_key_modifiers::shift},
    {event_flags::command, hot_key_modifiers::command},
};

// Bits outside the four modifiers are ignored.
constexpr std::uint32_t hotKeyModifiersFrom(std::uint64_t eventFlags) {
  std::uint32_t modifiers = 0;
  for (const ModifierForms& forms : modifierForms)
    if (eventFlags & forms.eventFlag) modifiers |= forms.hotKeyModifier;
  return modifiers;
}
constexpr std::uint64_t eventFlagsFrom(std::uint32_t hotKeyModifiers) {
  std::uint64_t flags = 0;
  for (const ModifierForms& forms : modifierForms)
    if (hotKeyModifiers & forms.hotKeyModifier) flags |= forms.eventFlag;
  return flags;
}

// A number that log lines show. Hosts pass on other ones for other failures.
enum class HotKeyError : std::int32_t { alreadyTaken = -9878 };

// Main thread. A chord that belongs to this program wherever the focus is, and that no other
// program sees.
class HotKeys {
 public:
  virtual ~HotKeys() = default;
  // `pressed` runs on the main thread, once a press: autorepeat does not count. It holds until the
  // result is dropped. Blocks for some round trips to the window system.
  [[nodiscard]] virtual Result<std::shared_ptr<void>, HotKeyError> registerHotKey(
      std::uint32_t keyCode, std::uint32_t modifiers, std::function<void()> pressed) = 0;
};

}  // namespace quillo
