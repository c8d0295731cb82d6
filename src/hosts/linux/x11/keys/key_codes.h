// Where the keys lie on an X keyboard: evdev's codes (linux/input-event-codes.h) plus 8.
#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

#include "platform/key_codes.h"

namespace quillo::linux_host {

struct KeyPosition {
  std::uint32_t usage;  // on the HID keyboard page
  xcb_keycode_t keycode;

  std::int64_t virtualKeyCode() const { return codeOf(keyOfUsage(usage).value()); }
};

inline constexpr KeyPosition keyPositions[] = {
    // clang-format off
    // Letters, as the ANSI layout has them
    {4, 38}, {5, 56}, {6, 54}, {7, 40}, {8, 26}, {9, 41}, {10, 42}, {11, 43}, {12, 31}, {13, 44},
    {14, 45}, {15, 46}, {16, 58}, {17, 57}, {18, 32}, {19, 33}, {20, 24}, {21, 27}, {22, 39},
    {23, 28}, {24, 30}, {25, 55}, {26, 25}, {27, 53}, {28, 29}, {29, 52},
    // Digits and signs, with Return, Escape, Backspace, Tab and Space among them
    {30, 10}, {31, 11}, {32, 12}, {33, 13}, {34, 14}, {35, 15}, {36, 16}, {37, 17}, {38, 18},
    {39, 19}, {40, 36}, {41, 9}, {42, 22}, {43, 23}, {44, 65}, {45, 20}, {46, 21}, {47, 34},
    {48, 35}, {49, 51}, {51, 47}, {52, 48}, {53, 49}, {54, 59}, {55, 60}, {56, 61}, {57, 66},
    // F1 to F12; Print screen, Scroll lock, Pause; movement
    {58, 67}, {59, 68}, {60, 69}, {61, 70}, {62, 71}, {63, 72}, {64, 73}, {65, 74}, {66, 75},
    {67, 76}, {68, 95}, {69, 96}, {70, 107}, {71, 78}, {72, 127}, {73, 118}, {74, 110}, {75, 112},
    {76, 119}, {77, 115}, {78, 117}, {79, 114}, {80, 113}, {81, 116}, {82, 111},
    // Keypad, the key beside the left shift of ISO keyboards, Menu
    {83, 77}, {84, 106}, {85, 63}, {86, 82}, {87, 86}, {88, 104}, {89, 87}, {90, 88}, {91, 89},
    {92, 83}, {93, 84}, {94, 85}, {95, 79}, {96, 80}, {97, 81}, {98, 90}, {99, 91}, {100, 94},
    {101, 135}, {103, 125},
    // F13 to F20
    {104, 191}, {105, 192}, {106, 193}, {107, 194}, {108, 195}, {109, 196}, {110, 197},
    {111, 198},
    // Sound, and keys of Japanese keyboards
    {127, 121}, {128, 123}, {129, 122}, {133, 129}, {135, 97}, {137, 132}, {144, 130}, {145, 131},
    // Modifiers
    {224, 37}, {225, 50}, {226, 64}, {227, 133}, {228, 105}, {229, 62}, {230, 108}, {231, 134},
    // clang-format on
};

constexpr std::optional<KeyPosition> positionOfKeycode(xcb_keycode_t keycode) {
  const auto* found = std::ranges::find(keyPositions, keycode, &KeyPosition::keycode);
  return found == std::end(keyPositions) ? std::nullopt : std::optional(*found);
}

constexpr std::optional<xcb_keycode_t> keycodeAtPosition(std::int64_t virtualKeyCode) {
  const auto usage = usageOf(Key{virtualKeyCode});
  if (!usage) return std::nullopt;
  const auto* found = std::ranges::find(keyPositions, *usage, &KeyPosition::usage);
  return found == std::end(keyPositions) ? std::nullopt : std::optional(found->keycode);
}

}  // namespace quillo::linux_host
