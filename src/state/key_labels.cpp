#include "state/key_labels.h"

#include <algorithm>
#include <array>
#include <string_view>

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
    {50, "`"}, {49, "Space"}, {36, "↩"}, {48, "⇥"}, {51, "⌫"}, {53, "⎋"}, {27, "-"}, {24, "="},
    {33, "["}, {30, "]"}, {42, "\\"}, {41, ";"}, {39, "'"}, {43, ","}, {47, "."}, {44, "/"},
    {122, "F1"}, {120, "F2"}, {99, "F3"}, {118, "F4"}, {96, "F5"}, {97, "F6"}, {98, "F7"},
    {100, "F8"}, {101, "F9"}, {109, "F10"}, {103, "F11"}, {111, "F12"},
    {123, "←"}, {124, "→"}, {125, "↓"}, {126, "↑"},
});
// clang-format on
static_assert(keyNames.size() == 68);

struct ModifierGlyph {
  std::uint32_t modifier;
  std::string_view glyph;
};

constexpr auto modifierGlyphs = std::to_array<ModifierGlyph>({
    {hot_key_modifiers::control, "⌃"},
    {hot_key_modifiers::option, "⌥"},
    {hot_key_modifiers::shift, "⇧"},
    {hot_key_modifiers::command, "⌘"},
});

}  // namespace

std::string keyLabel(std::int64_t keyCode) {
  const auto found = std::ranges::find(keyNames, keyCode, &KeyName::keyCode);
  if (found == keyNames.end()) return "Key " + std::to_string(keyCode);
  return std::string(found->label);
}

std::string hotKeyLabel(std::int64_t keyCode, std::int64_t modifiers) {
  std::string label;
  for (const ModifierGlyph& each : modifierGlyphs) {
    if (modifiers & each.modifier) label += each.glyph;
  }
  return label + keyLabel(keyCode);
}

}  // namespace quillo
