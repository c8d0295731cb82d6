// The colours of the panels, in the two colour schemes.
#pragma once

#include <cstdint>

namespace quillo {

enum class ColorScheme { light, dark };

struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  double opacity = 1;

  constexpr Color withOpacity(double value) const { return {red, green, blue, value}; }
  friend bool operator==(const Color&, const Color&) = default;
};

struct Palette {
  // The ground of a panel: let through a little where the desktop can, opaque elsewhere.
  Color material;
  Color opaqueMaterial;
  Color primary;    // text
  Color secondary;  // lesser text, bars that stand still
  Color accent;
  Color onAccent;  // text on the accent colour
  Color red;
  Color orange;
  Color green;
  Color field;   // the ground of a text that is quoted, or typed
  Color window;  // the ground of a window
  Color card;    // the ground of a group of rows in it
};

// Text has a contrast of at least 4.5 to 1 with the material, symbols at least 3 to 1 (WCAG 2.1,
// 1.4.3 and 1.4.11), which is why the state colours differ between the schemes.
inline constexpr Palette lightPalette = {
    .material = {246, 246, 248, 0.94},
    .opaqueMaterial = {246, 246, 248},
    .primary = {20, 20, 24},
    .secondary = {94, 94, 102},
    .accent = {0, 94, 220},
    .onAccent = {255, 255, 255},
    .red = {215, 0, 21},
    .orange = {176, 72, 0},
    .green = {22, 120, 52},
    .field = {20, 20, 24, 0.05},
    .window = {240, 240, 243},
    .card = {255, 255, 255},
};
inline constexpr Palette darkPalette = {
    .material = {38, 38, 42, 0.92},
    .opaqueMaterial = {38, 38, 42},
    .primary = {245, 245, 247},
    .secondary = {168, 168, 178},
    .accent = {82, 160, 255},
    .onAccent = {8, 18, 34},
    .red = {255, 92, 84},
    .orange = {255, 166, 46},
    .green = {64, 214, 108},
    .field = {255, 255, 255, 0.07},
    .window = {28, 28, 31},
    .card = {42, 42, 47},
};

constexpr const Palette& paletteOf(ColorScheme scheme) {
  return scheme == ColorScheme::dark ? darkPalette : lightPalette;
}

}  // namespace quillo
