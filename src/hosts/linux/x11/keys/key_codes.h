// The keys of a keyboard by position, in the three numberings that meet here.
#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

namespace quillo::linux_host {

struct KeyPosition {
  std::int64_t virtualKeyCode;  // of the ANSI layout
  xcb_keycode_t xKeycode;       // evdev's code (linux/input-event-codes.h) plus 8
  std::uint32_t usage;          // USB HID Usage Tables, keyboard page
};

// Where two keys share a virtual key code, the first one stands for it.
inline constexpr KeyPosition keyPositions[] = {
    // Letters
    {0, 38, 4},    // A
    {1, 39, 22},   // S
    {2, 40, 7},    // D
    {3, 41, 9},    // F
    {4, 43, 11},   // H
    {5, 42, 10},   // G
    {6, 52, 29},   // Z
    {7, 53, 27},   // X
    {8, 54, 6},    // C
    {9, 55, 25},   // V
    {11, 56, 5},   // B
    {12, 24, 20},  // Q
    {13, 25, 26},  // W
    {14, 26, 8},   // E
    {15, 27, 21},  // R
    {16, 29, 28},  // Y
    {17, 28, 23},  // T
    {31, 32, 18},  // O
    {32, 30, 24},  // U
    {34, 31, 12},  // I
    {35, 33, 19},  // P
    {37, 46, 15},  // L
    {38, 44, 13},  // J
    {40, 45, 14},  // K
    {45, 57, 17},  // N
    {46, 58, 16},  // M
    // Digits and signs
    {18, 10, 30},   // 1
    {19, 11, 31},   // 2
    {20, 12, 32},   // 3
    {21, 13, 33},   // 4
    {23, 14, 34},   // 5
    {22, 15, 35},   // 6
    {26, 16, 36},   // 7
    {28, 17, 37},   // 8
    {25, 18, 38},   // 9
    {29, 19, 39},   // 0
    {27, 20, 45},   // -
    {24, 21, 46},   // =
    {33, 34, 47},   // [
    {30, 35, 48},   // ]
    {42, 51, 49},   // backslash
    {41, 47, 51},   // ;
    {39, 48, 52},   // '
    {50, 49, 53},   // `
    {43, 59, 54},   // ,
    {47, 60, 55},   // .
    {44, 61, 56},   // /
    {10, 94, 100},  // the key beside the left shift of ISO keyboards
    // Editing and movement
    {36, 36, 40},     // Return
    {48, 23, 43},     // Tab
    {49, 65, 44},     // Space
    {51, 22, 42},     // Backspace
    {53, 9, 41},      // Escape
    {110, 135, 101},  // Menu
    {114, 118, 73},   // Insert (Help)
    {115, 110, 74},   // Home
    {116, 112, 75},   // Page up
    {117, 119, 76},   // Delete forward
    {119, 115, 77},   // End
    {121, 117, 78},   // Page down
    {123, 113, 80},   // Left
    {124, 114, 79},   // Right
    {125, 116, 81},   // Down
    {126, 111, 82},   // Up
    // Modifiers
    {54, 134, 231},  // right command
    {55, 133, 227},  // command
    {56, 50, 225},   // shift
    {57, 66, 57},    // caps lock
    {58, 64, 226},   // option
    {59, 37, 224},   // control
    {60, 62, 229},   // right shift
    {61, 108, 230},  // right option
    {62, 105, 228},  // right control
    // Function keys
    {122, 67, 58},    // F1
    {120, 68, 59},    // F2
    {99, 69, 60},     // F3
    {118, 70, 61},    // F4
    {96, 71, 62},     // F5
    {97, 72, 63},     // F6
    {98, 73, 64},     // F7
    {100, 74, 65},    // F8
    {101, 75, 66},    // F9
    {109, 76, 67},    // F10
    {103, 95, 68},    // F11
    {111, 96, 69},    // F12
    {105, 191, 104},  // F13
    {107, 192, 105},  // F14
    {113, 193, 106},  // F15
    {106, 194, 107},  // F16
    {64, 195, 108},   // F17
    {79, 196, 109},   // F18
    {80, 197, 110},   // F19
    {90, 198, 111},   // F20
    {105, 107, 70},   // Print screen, where F13 lies
    {107, 78, 71},    // Scroll lock, where F14 lies
    {113, 127, 72},   // Pause, where F15 lies
    // Keypad
    {65, 91, 99},    // .
    {67, 63, 85},    // *
    {69, 86, 87},    // +
    {71, 77, 83},    // Num lock (Clear)
    {75, 106, 84},   // /
    {76, 104, 88},   // Enter
    {78, 82, 86},    // -
    {81, 125, 103},  // =
    {82, 90, 98},    // 0
    {83, 87, 89},    // 1
    {84, 88, 90},    // 2
    {85, 89, 91},    // 3
    {86, 83, 92},    // 4
    {87, 84, 93},    // 5
    {88, 85, 94},    // 6
    {89, 79, 95},    // 7
    {91, 80, 96},    // 8
    {92, 81, 97},    // 9
    // Sound, and keys of Japanese keyboards
    {72, 123, 128},   // Volume up
    {73, 122, 129},   // Volume down
    {74, 121, 127},   // Mute
    {93, 132, 137},   // Yen
    {94, 97, 135},    // Ro
    {95, 129, 133},   // Keypad comma
    {102, 131, 145},  // Eisu
    {104, 130, 144},  // Kana
};

inline constexpr std::int64_t commandKeyCode = 55;
inline constexpr std::int64_t functionKeyCode = 63;
// Apple's vendor page, on which the Fn key lies.
inline constexpr std::uint32_t functionUsagePage = 255;
inline constexpr std::uint32_t functionUsage = 3;
inline constexpr std::uint32_t keyboardUsagePage = 7;

constexpr std::optional<KeyPosition> positionOfKeycode(xcb_keycode_t keycode) {
  const auto* found =
      std::find_if(std::begin(keyPositions), std::end(keyPositions),
                   [keycode](const KeyPosition& key) { return key.xKeycode == keycode; });
  return found == std::end(keyPositions) ? std::nullopt : std::optional(*found);
}

constexpr std::optional<xcb_keycode_t> keycodeAtPosition(std::int64_t virtualKeyCode) {
  const auto* found = std::find_if(
      std::begin(keyPositions), std::end(keyPositions),
      [virtualKeyCode](const KeyPosition& key) { return key.virtualKeyCode == virtualKeyCode; });
  return found == std::end(keyPositions) ? std::nullopt : std::optional(found->xKeycode);
}

}  // namespace quillo::linux_host
