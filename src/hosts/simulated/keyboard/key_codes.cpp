#include "hosts/simulated/keyboard/key_codes.h"

#include <algorithm>
#include <array>

#include "platform/key_event.h"

namespace quillo::simulated {
namespace {

struct KeyRow {
  Key key;
  std::uint32_t usage;
  const char* us = nullptr;
  const char* dvorak = nullptr;
  const char* russian = nullptr;
};

// clang-format off
constexpr std::array keys{
    KeyRow{Key::a, 4, "a", "a", "ф"}, KeyRow{Key::b, 5, "b", "x", "и"}, KeyRow{Key::c, 6, "c", "j", "с"},
    KeyRow{Key::d, 7, "d", "e", "в"}, KeyRow{Key::e, 8, "e", ".", "у"}, KeyRow{Key::f, 9, "f", "u", "а"},
    KeyRow{Key::g, 10, "g", "i", "п"}, KeyRow{Key::h, 11, "h", "d", "р"}, KeyRow{Key::i, 12, "i", "c", "ш"},
    KeyRow{Key::j, 13, "j", "h", "о"}, KeyRow{Key::k, 14, "k", "t", "л"}, KeyRow{Key::l, 15, "l", "n", "д"},
    KeyRow{Key::m, 16, "m", "m", "ь"}, KeyRow{Key::n, 17, "n", "b", "т"}, KeyRow{Key::o, 18, "o", "r", "щ"},
    KeyRow{Key::p, 19, "p", "l", "з"}, KeyRow{Key::q, 20, "q", "'", "й"}, KeyRow{Key::r, 21, "r", "p", "к"},
    KeyRow{Key::s, 22, "s", "o", "ы"}, KeyRow{Key::t, 23, "t", "y", "е"}, KeyRow{Key::u, 24, "u", "g", "г"},
    KeyRow{Key::v, 25, "v", "k", "м"}, KeyRow{Key::w, 26, "w", ",", "ц"}, KeyRow{Key::x, 27, "x", "q", "ч"},
    KeyRow{Key::y, 28, "y", "f", "н"}, KeyRow{Key::z, 29, "z", ";", "я"},
    KeyRow{Key::digit1, 30, "1", "1", "1"}, KeyRow{Key::digit2, 31, "2", "2", "2"},
    KeyRow{Key::digit3, 32, "3", "3", "3"}, KeyRow{Key::digit4, 33, "4", "4", "4"},
    KeyRow{Key::digit5, 34, "5", "5", "5"}, KeyRow{Key::digit6, 35, "6", "6", "6"},
    KeyRow{Key::digit7, 36, "7", "7", "7"}, KeyRow{Key::digit8, 37, "8", "8", "8"},
    KeyRow{Key::digit9, 38, "9", "9", "9"}, KeyRow{Key::digit0, 39, "0", "0", "0"},
    KeyRow{Key::returnKey, 40, "\r", "\r", "\r"}, KeyRow{Key::escape, 41, "\x1b", "\x1b", "\x1b"},
    KeyRow{Key::backspace, 42, "\x7f", "\x7f", "\x7f"}, KeyRow{Key::tab, 43, "\t", "\t", "\t"},
    KeyRow{Key::space, 44, " ", " ", " "}, KeyRow{Key::minus, 45, "-", "[", "-"},
    KeyRow{Key::equal, 46, "=", "]", "="}, KeyRow{Key::leftBracket, 47, "[", "/", "х"},
    KeyRow{Key::rightBracket, 48, "]", "=", "ъ"}, KeyRow{Key::backslash, 49, "\\", "\\", "\\"},
    KeyRow{Key::semicolon, 51, ";", "s", "ж"}, KeyRow{Key::quote, 52, "'", "-", "э"},
    KeyRow{Key::grave, 53, "`", "`", "ё"}, KeyRow{Key::comma, 54, ",", "w", "б"},
    KeyRow{Key::period, 55, ".", "v", "ю"}, KeyRow{Key::slash, 56, "/", "z", "."},
    KeyRow{Key::capsLock, 57}, KeyRow{Key::numLock, 83},
    KeyRow{Key::control, 224}, KeyRow{Key::shift, 225}, KeyRow{Key::option, 226}, KeyRow{Key::command, 227},
    KeyRow{Key::rightControl, 228}, KeyRow{Key::rightShift, 229}, KeyRow{Key::rightOption, 230},
    KeyRow{Key::rightCommand, 231},
};
// clang-format on

struct ModifierRow {
  Key key;
  ModifierBits bits;
};

// The device bits are those of the platform's low-level event header.
constexpr std::array modifiers{
    ModifierRow{Key::control, {event_flags::control, 0x1}},
    ModifierRow{Key::shift, {event_flags::shift, 0x2}},
    ModifierRow{Key::rightShift, {event_flags::shift, 0x4}},
    ModifierRow{Key::command, {event_flags::command, 0x8}},
    ModifierRow{Key::rightCommand, {event_flags::command, 0x10}},
    ModifierRow{Key::option, {event_flags::option, 0x20}},
    ModifierRow{Key::rightOption, {event_flags::option, 0x40}},
    ModifierRow{Key::rightControl, {event_flags::control, 0x2000}},
    ModifierRow{Key::function, {event_flags::function, 0}},
};

const KeyRow* rowOf(std::int64_t keyCode) {
  const auto row = std::find_if(keys.begin(), keys.end(), [&](const KeyRow& candidate) {
    return static_cast<std::int64_t>(candidate.key) == keyCode;
  });
  return row == keys.end() ? nullptr : &*row;
}

}  // namespace

std::optional<std::string> charactersOf(std::int64_t keyCode, KeyboardLayout layout) {
  const KeyRow* row = rowOf(keyCode);
  if (!row || !row->us) return std::nullopt;
  switch (layout) {
    case KeyboardLayout::us:
      return row->us;
    case KeyboardLayout::dvorak:
      return row->dvorak;
    case KeyboardLayout::russian:
      return row->russian;
  }
  return std::nullopt;
}

HIDUsage usageOf(Key key) {
  if (key == Key::function) return {255, 3};
  const KeyRow* row = rowOf(static_cast<std::int64_t>(key));
  return {7, row ? row->usage : 0};
}

std::optional<ModifierBits> modifierBitsOf(std::int64_t keyCode) {
  for (const ModifierRow& row : modifiers) {
    if (static_cast<std::int64_t>(row.key) == keyCode) return row.bits;
  }
  return std::nullopt;
}

}  // namespace quillo::simulated
