#include "state/key_labels.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>

#include "platform/hot_keys.h"
#include "platform/key_codes.h"

namespace quillo {
namespace {

struct KeyName {
  Key key;
  std::string_view label;
};

// clang-format off
constexpr auto keyNames = std::to_array<KeyName>({
    {Key::a, "A"}, {Key::b, "B"}, {Key::c, "C"}, {Key::d, "D"}, {Key::e, "E"}, {Key::f, "F"}, {Key::g, "G"}, {Key::h, "H"}, {Key::i, "I"},
    {Key::j, "J"}, {Key::k, "K"}, {Key::l, "L"}, {Key::m, "M"}, {Key::n, "N"}, {Key::o, "O"}, {Key::p, "P"}, {Key::q, "Q"},
    {Key::r, "R"}, {Key::s, "S"}, {Key::t, "T"}, {Key::u, "U"}, {Key::v, "V"}, {Key::w, "W"}, {Key::x, "X"}, {Key::y, "Y"}, {Key::z, "Z"},
    {Key::digit0, "0"}, {Key::digit1, "1"}, {Key::digit2, "2"}, {Key::digit3, "3"}, {Key::digit4, "4"}, {Key::digit5, "5"}, {Key::digit6, "6"}, {Key::digit7, "7"},
    {Key::digit8, "8"}, {Key::digit9, "9"},
    {Key::grave, "`"}, {Key::minus, "-"}, {Key::equal, "="},
    {Key::leftBracket, "["}, {Key::rightBracket, "]"}, {Key::backslash, "\\"}, {Key::semicolon, ";"}, {Key::quote, "'"}, {Key::comma, ","}, {Key::period, "."}, {Key::slash, "/"},
    {Key::f1, "F1"}, {Key::f2, "F2"}, {Key::f3, "F3"}, {Key::f4, "F4"}, {Key::f5, "F5"}, {Key::f6, "F6"}, {Key::f7, "F7"},
    {Key::f8, "F8"}, {Key::f9, "F9"}, {Key::f10, "F10"}, {Key::f11, "F11"}, {Key::f12, "F12"},
    {Key::left, "←"}, {Key::right, "→"}, {Key::down, "↓"}, {Key::up, "↑"},
});
// clang-format on
struct WordKey {
  Key key;
  Literal label;
};

// Keys whose names differ from language to language, and from one system to the next.
constexpr auto wordKeys = std::to_array<WordKey>({
    {Key::space, words("Space")},
    {Key::returnKey, words("↩")},
    {Key::tab, words("⇥")},
    {Key::backspace, words("⌫")},
    {Key::escape, words("⎋")},
});
static_assert(keyNames.size() + wordKeys.size() == 68);

struct ModifierGlyph {
  std::uint32_t modifier;
  Literal before;  // what it makes of the rest of a chord
  Literal apart;
};

constexpr auto modifierGlyphs = std::to_array<ModifierGlyph>({
    {hot_key_modifiers::control, words("⌃{key}"), words("⌃ {key}")},
    {hot_key_modifiers::option, words("⌥{key}"), words("⌥ {key}")},
    {hot_key_modifiers::shift, words("⇧{key}"), words("⇧ {key}")},
    {hot_key_modifiers::command, words("⌘{key}"), words("⌘ {key}")},
});

Words chord(std::int64_t keyCode, std::int64_t modifiers, Literal ModifierGlyph::* form) {
  Words label = keyLabel(keyCode);
  // From the key outwards: each modifier has its place before or behind the rest.
  for (const ModifierGlyph& each : modifierGlyphs | std::views::reverse)
    if (modifiers & each.modifier) label = words(each.*form, {{"key", std::move(label)}});
  return label;
}

}  // namespace

Words keyLabel(std::int64_t keyCode) {
  const auto word = std::ranges::find(wordKeys, Key{keyCode}, &WordKey::key);
  if (word != wordKeys.end()) return word->label;
  const auto name = std::ranges::find(keyNames, Key{keyCode}, &KeyName::key);
  if (name != keyNames.end()) return asItStands(std::string(name->label));
  return words("Key {code}", {{"code", asItStands(std::to_string(keyCode))}});
}

Words hotKeyLabel(std::int64_t keyCode, std::int64_t modifiers) {
  return chord(keyCode, modifiers, &ModifierGlyph::before);
}

Words hotKeyKeys(std::int64_t keyCode, std::int64_t modifiers) {
  return chord(keyCode, modifiers, &ModifierGlyph::apart);
}

}  // namespace quillo
