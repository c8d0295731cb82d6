#include "hosts/simulated/keyboard/key_codes.h"

#include <algorithm>
#include <array>

#include "platform/key_event.h"

namespace quillo::simulated {
namespace {

struct KeyRow {
  Key key;
  const char* us = nullptr;
  const char* dvorak = nullptr;
  const char* russian = nullptr;
};

// clang-format off
constexpr std::array keys{
    KeyRow{Key::a, "a", "a", "ф"}, KeyRow{Key::b, "b", "x", "и"}, KeyRow{Key::c, "c", "j", "с"},
    KeyRow{Key::d, "d", "e", "в"}, KeyRow{Key::e, "e", ".", "у"}, KeyRow{Key::f, "f", "u", "а"},
    KeyRow{Key::g, "g", "i", "п"}, KeyRow{Key::h, "h", "d", "р"}, KeyRow{Key::i, "i", "c", "ш"},
    KeyRow{Key::j, "j", "h", "о"}, KeyRow{Key::k, "k", "t", "л"}, KeyRow{Key::l, "l", "n", "д"},
    KeyRow{Key::m, "m", "m", "ь"}, KeyRow{Key::n, "n", "b", "т"}, KeyRow{Key::o, "o", "r", "щ"},
    KeyRow{Key::p, "p", "l", "з"}, KeyRow{Key::q, "q", "'", "й"}, KeyRow{Key::r, "r", "p", "к"},
    KeyRow{Key::s, "s", "o", "ы"}, KeyRow{Key::t, "t", "y", "е"}, KeyRow{Key::u, "u", "g", "г"},
    KeyRow{Key::v, "v", "k", "м"}, KeyRow{Key::w, "w", ",", "ц"}, KeyRow{Key::x, "x", "q", "ч"},
    KeyRow{Key::y, "y", "f", "н"}, KeyRow{Key::z, "z", ";", "я"},
    KeyRow{Key::digit1, "1", "1", "1"}, KeyRow{Key::digit2, "2", "2", "2"},
    KeyRow{Key::digit3, "3", "3", "3"}, KeyRow{Key::digit4, "4", "4", "4"},
    KeyRow{Key::digit5, "5", "5", "5"}, KeyRow{Key::digit6, "6", "6", "6"},
    KeyRow{Key::digit7, "7", "7", "7"}, KeyRow{Key::digit8, "8", "8", "8"},
    KeyRow{Key::digit9, "9", "9", "9"}, KeyRow{Key::digit0, "0", "0", "0"},
    KeyRow{Key::returnKey, "\r", "\r", "\r"}, KeyRow{Key::escape, "\x1b", "\x1b", "\x1b"},
    KeyRow{Key::backspace, "\x7f", "\x7f", "\x7f"}, KeyRow{Key::tab, "\t", "\t", "\t"},
    KeyRow{Key::space, " ", " ", " "}, KeyRow{Key::minus, "-", "[", "-"},
    KeyRow{Key::equal, "=", "]", "="}, KeyRow{Key::leftBracket, "[", "/", "х"},
    KeyRow{Key::rightBracket, "]", "=", "ъ"}, KeyRow{Key::backslash, "\\", "\\", "\\"},
    KeyRow{Key::semicolon, ";", "s", "ж"}, KeyRow{Key::quote, "'", "-", "э"},
    KeyRow{Key::grave, "`", "`", "ё"}, KeyRow{Key::comma, ",", "w", "б"},
    KeyRow{Key::period, ".", "v", "ю"}, KeyRow{Key::slash, "/", "z", "."},
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

std::optional<ModifierBits> modifierBitsOf(std::int64_t keyCode) {
  for (const ModifierRow& row : modifiers) {
    if (static_cast<std::int64_t>(row.key) == keyCode) return row.bits;
  }
  return std::nullopt;
}

}  // namespace quillo::simulated
