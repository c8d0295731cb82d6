// A key of the keyboard going down or up. Key codes are the virtual key codes of the ANSI layout
// (V is 9, Space 49).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillo {

// Bits of an event's flags. Hosts may set others, below them.
namespace event_flags {
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t function = 0x800000;
// The four that make a chord.
inline constexpr std::uint64_t chordMask = shift | control | option | command;
}  // namespace event_flags

struct KeyEvent {
  enum class Type { keyDown, keyUp, flagsChanged };
  Type type = Type::keyDown;
  std::int64_t keyCode = 0;
  std::uint64_t flags = 0;
  // What the key would type without modifiers, in the current layout.
  std::optional<std::string> charactersIgnoringModifiers;
  bool isAutorepeat = false;
  // The field that posted events carry; 0 for keys of the user.
  std::int64_t userData = 0;
};

enum class KeyDirection { down, up };

// What one who sees an event before the others does with it.
enum class TapVerdict { pass, swallow };

}  // namespace quillo
