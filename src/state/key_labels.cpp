#include "state/key_labels.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>

#include "platform/hot_keys.h"

namespace quillo {
namespace {

struct KeyName {
  std::int64_t keyCode;
  std::string_view label;
};

// clang-format off
constexpr auto keyNames = std::to_array<KeyName>({
    {0, "A"}, {11, "B"}, {8, "C"}, {2, "D"}, {14, "E"}, {3, "F"}, {5, "G"}, {4, "H"}, {34, "I"},
    {38, "J"}, {40, "K"}, {37, "L"}, {46, "M"}, {45, "N"}, {31, "O"}, {35, "P"}, {12, "Q"},
    {15, "R"}, {1, "S"}, {17, "T"}, {32, "U"}, {9, "V"}, {13, "W"}, {7, "X"}, {16, "Y"}, {6, "Z"},
    {29, "0"}, {18, "1"}, {19, "2"}, {20, "3"}, {21, "4"}, {23, "5"}, {22, "6"}, {26, "7"},
    {28, "8"}, {25, "9"},
    {50, "`"}, {27, "-"}, {24, "="},
    {33, "["}, {30, "]"}, {42, "\\"}, {41, ";"}, {39, "'"}, {43, ","}, {47, "."}, {44, "/"},
    {122, "F1"}, {120, "F2"}, {99, "F3"}, {118, "F4"}, {96, "F5"}, {97, "F6"}, {98, "F7"},
    {100, "F8"}, {101, "F9"}, {109, "F10"}, {103, "F11"}, {111, "F12"},
    {123, "←"}, {124, "→"}, {125, "↓"}, {126, "↑"},
});
// clang-format on
struct WordKey {
  std::int64_t keyCode;
  Literal label;
};

// Keys whose names differ from language to language, and from one system to the next.
constexpr auto wordKeys = std::to_array<WordKey>({
    {49, words("Space")},
    {36, words("↩")},
    {48, words("⇥")},
    {51, words("⌫")},
    {53, words("⎋")},
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
  const auto word = std::ranges::find(wordKeys, keyCode, &WordKey::keyCode);
  if (word != wordKeys.end()) return word->label;
  const auto name = std::ranges::find(keyNames, keyCode, &KeyName::keyCode);
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
