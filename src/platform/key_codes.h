// The keys of a keyboard by position: their virtual key codes, and their usages on the HID keyboard
// page (USB HID Usage Tables). The one table of both; key codes of other systems are mapped to it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

namespace quillo {

// Virtual key codes of the ANSI layout, named after what the key types there.
enum class Key : std::int64_t {
  // clang-format off
  a = 0, b = 11, c = 8, d = 2, e = 14, f = 3, g = 5, h = 4, i = 34, j = 38, k = 40, l = 37, m = 46,
  n = 45, o = 31, p = 35, q = 12, r = 15, s = 1, t = 17, u = 32, v = 9, w = 13, x = 7, y = 16, z = 6,
  digit1 = 18, digit2 = 19, digit3 = 20, digit4 = 21, digit5 = 23, digit6 = 22, digit7 = 26,
  digit8 = 28, digit9 = 25, digit0 = 29,
  minus = 27, equal = 24, leftBracket = 33, rightBracket = 30, backslash = 42, semicolon = 41,
  quote = 39, grave = 50, comma = 43, period = 47, slash = 44,
  isoSection = 10,  // beside the left shift of ISO keyboards
  returnKey = 36, tab = 48, space = 49, backspace = 51, escape = 53, menu = 110, insert = 114,
  home = 115, pageUp = 116, deleteForward = 117, end = 119, pageDown = 121, left = 123, right = 124,
  down = 125, up = 126,
  command = 55, rightCommand = 54, shift = 56, rightShift = 60, option = 58, rightOption = 61,
  control = 59, rightControl = 62, capsLock = 57,
  function = 63,  // has no usage on the keyboard page
  f1 = 122, f2 = 120, f3 = 99, f4 = 118, f5 = 96, f6 = 97, f7 = 98, f8 = 100, f9 = 101, f10 = 109,
  f11 = 103, f12 = 111, f13 = 105, f14 = 107, f15 = 113, f16 = 106, f17 = 64, f18 = 79, f19 = 80,
  f20 = 90,
  keypadDecimal = 65, keypadMultiply = 67, keypadPlus = 69, numLock = 71, keypadDivide = 75,
  keypadEnter = 76, keypadMinus = 78, keypadEqual = 81, keypad0 = 82, keypad1 = 83, keypad2 = 84,
  keypad3 = 85, keypad4 = 86, keypad5 = 87, keypad6 = 88, keypad7 = 89, keypad8 = 91, keypad9 = 92,
  volumeUp = 72, volumeDown = 73, mute = 74,
  yen = 93, underscore = 94, keypadComma = 95, eisu = 102, kana = 104,  // of Japanese keyboards
  // clang-format on
};

constexpr std::int64_t codeOf(Key key) {
  return static_cast<std::int64_t>(key);
}

namespace hid {
inline constexpr std::uint32_t keyboardPage = 7;
// Apple's vendor page, on which the Fn key lies.
inline constexpr std::uint32_t vendorPage = 255;
inline constexpr std::uint32_t vendorFunction = 3;
// Of the keyboard page.
constexpr bool isModifier(std::int64_t usage) {
  return usage >= 224 && usage <= 231;
}
}  // namespace hid

struct KeyUsage {
  Key key;
  std::uint32_t usage;  // on the keyboard page
};

// Where two keys share a virtual key code, the first one stands for it.
inline constexpr KeyUsage keyUsages[] = {
    // clang-format off
    {Key::a, 4}, {Key::b, 5}, {Key::c, 6}, {Key::d, 7}, {Key::e, 8}, {Key::f, 9}, {Key::g, 10},
    {Key::h, 11}, {Key::i, 12}, {Key::j, 13}, {Key::k, 14}, {Key::l, 15}, {Key::m, 16}, {Key::n, 17},
    {Key::o, 18}, {Key::p, 19}, {Key::q, 20}, {Key::r, 21}, {Key::s, 22}, {Key::t, 23}, {Key::u, 24},
    {Key::v, 25}, {Key::w, 26}, {Key::x, 27}, {Key::y, 28}, {Key::z, 29},
    {Key::digit1, 30}, {Key::digit2, 31}, {Key::digit3, 32}, {Key::digit4, 33}, {Key::digit5, 34},
    {Key::digit6, 35}, {Key::digit7, 36}, {Key::digit8, 37}, {Key::digit9, 38}, {Key::digit0, 39},
    {Key::returnKey, 40}, {Key::escape, 41}, {Key::backspace, 42}, {Key::tab, 43}, {Key::space, 44},
    {Key::minus, 45}, {Key::equal, 46}, {Key::leftBracket, 47}, {Key::rightBracket, 48},
    {Key::backslash, 49}, {Key::semicolon, 51}, {Key::quote, 52}, {Key::grave, 53}, {Key::comma, 54},
    {Key::period, 55}, {Key::slash, 56}, {Key::capsLock, 57},
    {Key::f1, 58}, {Key::f2, 59}, {Key::f3, 60}, {Key::f4, 61}, {Key::f5, 62}, {Key::f6, 63},
    {Key::f7, 64}, {Key::f8, 65}, {Key::f9, 66}, {Key::f10, 67}, {Key::f11, 68}, {Key::f12, 69},
    {Key::insert, 73}, {Key::home, 74}, {Key::pageUp, 75}, {Key::deleteForward, 76}, {Key::end, 77},
    {Key::pageDown, 78}, {Key::right, 79}, {Key::left, 80}, {Key::down, 81}, {Key::up, 82},
    {Key::numLock, 83}, {Key::keypadDivide, 84}, {Key::keypadMultiply, 85}, {Key::keypadMinus, 86},
    {Key::keypadPlus, 87}, {Key::keypadEnter, 88}, {Key::keypad1, 89}, {Key::keypad2, 90},
    {Key::keypad3, 91}, {Key::keypad4, 92}, {Key::keypad5, 93}, {Key::keypad6, 94},
    {Key::keypad7, 95}, {Key::keypad8, 96}, {Key::keypad9, 97}, {Key::keypad0, 98},
    {Key::keypadDecimal, 99}, {Key::isoSection, 100}, {Key::menu, 101}, {Key::keypadEqual, 103},
    {Key::f13, 104}, {Key::f14, 105}, {Key::f15, 106}, {Key::f16, 107}, {Key::f17, 108},
    {Key::f18, 109}, {Key::f19, 110}, {Key::f20, 111},
    {Key::f13, 70}, {Key::f14, 71}, {Key::f15, 72},  // Print screen, Scroll lock, Pause lie there
    {Key::mute, 127}, {Key::volumeUp, 128}, {Key::volumeDown, 129}, {Key::keypadComma, 133},
    {Key::underscore, 135}, {Key::yen, 137}, {Key::kana, 144}, {Key::eisu, 145},
    {Key::control, 224}, {Key::shift, 225}, {Key::option, 226}, {Key::command, 227},
    {Key::rightControl, 228}, {Key::rightShift, 229}, {Key::rightOption, 230},
    {Key::rightCommand, 231},
    // clang-format on
};

constexpr std::optional<std::uint32_t> usageOf(Key key) {
  const auto* found = std::ranges::find(keyUsages, key, &KeyUsage::key);
  return found == std::end(keyUsages) ? std::nullopt : std::optional(found->usage);
}

constexpr std::optional<Key> keyOfUsage(std::uint32_t usage) {
  const auto* found = std::ranges::find(keyUsages, usage, &KeyUsage::usage);
  return found == std::end(keyUsages) ? std::nullopt : std::optional(found->key);
}

}  // namespace quillo
