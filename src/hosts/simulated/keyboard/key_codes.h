// The keys of the simulated keyboard, and what they type.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillo::simulated {

// Virtual key codes of the ANSI layout.
enum class Key : std::int64_t {
  a = 0,
  s = 1,
  d = 2,
  f = 3,
  h = 4,
  g = 5,
  z = 6,
  x = 7,
  c = 8,
  v = 9,
  b = 11,
  q = 12,
  w = 13,
  e = 14,
  r = 15,
  y = 16,
  t = 17,
  digit1 = 18,
  digit2 = 19,
  digit3 = 20,
  digit4 = 21,
  digit6 = 22,
  digit5 = 23,
  equal = 24,
  digit9 = 25,
  digit7 = 26,
  minus = 27,
  digit8 = 28,
  digit0 = 29,
  rightBracket = 30,
  o = 31,
  u = 32,
  leftBracket = 33,
  i = 34,
  p = 35,
  returnKey = 36,
  l = 37,
  j = 38,
  quote = 39,
  k = 40,
  semicolon = 41,
  backslash = 42,
  comma = 43,
  slash = 44,
  n = 45,
  m = 46,
  period = 47,
  tab = 48,
  space = 49,
  grave = 50,
  backspace = 51,
  escape = 53,
  rightCommand = 54,
  command = 55,
  shift = 56,
  capsLock = 57,
  option = 58,
  control = 59,
  rightShift = 60,
  rightOption = 61,
  rightControl = 62,
  function = 63,
  numLock = 71,
};

enum class KeyboardLayout { us, dvorak, russian };

// What the key types without modifiers; nothing for modifiers.
std::optional<std::string> charactersOf(std::int64_t keyCode, KeyboardLayout layout);

// The element of the keyboard that the key is (USB HID Usage Tables, pages 7 and 255).
struct HIDUsage {
  std::uint32_t page = 7;
  std::uint32_t usage = 0;
};
HIDUsage usageOf(Key key);

// The flag that a modifier sets while it is down, and the device-dependent bit that tells left from
// right. Nothing for other keys and for the locks.
struct ModifierBits {
  std::uint64_t flag = 0;
  std::uint64_t deviceBit = 0;
};
std::optional<ModifierBits> modifierBitsOf(std::int64_t keyCode);

}  // namespace quillo::simulated
