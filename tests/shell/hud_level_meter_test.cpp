// The meter's numbers, and the contrast of the colours.
#include "shell/status/hud_level_meter.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quillo {
namespace {

TEST(HUDLevelMeterTest, LevelsScrollToTheLeftAndAreCutAtTheTop) {
  HUDLevelMeter meter;
  meter.setActive(true);
  for (float level : {0.2f, 0.4f, 0.4f, 1.7f}) meter.setLevel(level);
  const auto& levels = meter.levels();
  EXPECT_EQ(levels[60], 0);
  EXPECT_EQ(levels[61], 0.2f);
  EXPECT_EQ(levels[62], 0.4f);  // the same again changed nothing
  EXPECT_EQ(levels[63], 1.0f);
  EXPECT_EQ(meter.peak(), 1.7f);  // but not the peak

  for (int i = 0; i < 100; ++i) meter.setLevel(0.3f + 0.001f * static_cast<float>(i));
  EXPECT_EQ(levels[0], 0.3f + 0.001f * 36);

  meter.setActive(false);
  meter.setLevel(0.9f);  // comes late
  meter.setActive(true);
  EXPECT_EQ(levels, decltype(levels){});
  EXPECT_EQ(meter.peak(), 0);
}

TEST(HUDLevelMeterTest, TheColourRisesAtOnceAndFallsSlowly) {
  HUDLevelMeter meter;
  meter.setActive(true);
  const Color red{239, 68, 68}, amber{245, 158, 11}, green{34, 197, 94};
  EXPECT_EQ(meter.barColor(ColorScheme::dark), red);
  meter.setLevel(0.15f);
  EXPECT_EQ(meter.barColor(ColorScheme::dark), amber);
  EXPECT_EQ(meter.barColor(ColorScheme::light), (Color{180, 83, 9}));
  meter.setLevel(0.5f);
  EXPECT_EQ(meter.barColor(ColorScheme::dark), green);
  EXPECT_EQ(meter.barColor(ColorScheme::light), (Color{21, 128, 61}));
  meter.setLevel(0.0f);
  EXPECT_FLOAT_EQ(meter.peak(), 0.45f);
  EXPECT_EQ(meter.barColor(ColorScheme::dark), amber);
  const auto beQuiet = [&](int updates) {
    for (int i = 0; i < updates; ++i) meter.setLevel(meter.levels()[63] == 0 ? 0.01f : 0.0f);
  };
  beQuiet(10);
  EXPECT_EQ(meter.barColor(ColorScheme::dark), amber);
  beQuiet(1);
  EXPECT_EQ(meter.barColor(ColorScheme::dark), red);
  EXPECT_EQ(meter.barColor(ColorScheme::light), (Color{220, 38, 38}));
}

// Relative luminance and contrast as WCAG 2.1 defines them.
double luminance(const Color& color) {
  const auto linear = [](std::uint8_t channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const Color& a, const Color& b) {
  const double high = std::max(luminance(a), luminance(b));
  return (high + 0.05) / (std::min(luminance(a), luminance(b)) + 0.05);
}

// What is seen where `color` lies on an opaque ground.
Color over(const Color& color, const Color& ground) {
  const auto blend = [&](std::uint8_t above, std::uint8_t below) {
    return static_cast<std::uint8_t>(
        std::lround(above * color.opacity + below * (1 - color.opacity)));
  };
  return {blend(color.red, ground.red), blend(color.green, ground.green),
          blend(color.blue, ground.blue)};
}

Color meterColor(float level, ColorScheme scheme) {
  HUDLevelMeter meter;
  meter.setActive(true);
  meter.setLevel(level);
  return meter.barColor(scheme);
}

TEST(PaletteTest, TextAndSymbolsStandOutInBothSchemesWhateverShinesThrough) {
  constexpr double text = 4.5, symbol = 3;  // WCAG 2.1, 1.4.3 and 1.4.11
  constexpr double discOpacity = 0.16, pressedOpacity = 0.87;
  struct Case {
    const char* name;
    Color color;
    Color ground;
    double least;
  };
  for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
    const Palette& palette = paletteOf(scheme);
    for (const Color& below : {Color{0, 0, 0}, Color{255, 255, 255}, palette.opaqueMaterial}) {
      const Color ground = over(palette.material, below);
      const auto disc = [&](const Color& color) {
        return over(color.withOpacity(discOpacity), ground);
      };
      const Case cases[] = {
          {"text", palette.primary, ground, 7},
          {"lesser text", palette.secondary, ground, text},
          {"quoted text", palette.primary, over(palette.field, ground), 7},
          {"matches", palette.green, ground, text},
          {"may differ", palette.orange, ground, text},
          {"title of a pressed button", palette.onAccent,
           over(palette.accent.withOpacity(pressedOpacity), ground), text},
          {"symbol", palette.accent, ground, symbol},
          {"symbol at work", palette.accent, disc(palette.accent), symbol},
          {"symbol of a recording", palette.red, disc(palette.red), symbol},
          {"symbol of a failure", palette.orange, disc(palette.orange), symbol},
          {"loud", meterColor(0.9f, scheme), ground, symbol},
          {"medium", meterColor(0.3f, scheme), ground, symbol},
          {"quiet", meterColor(0.05f, scheme), ground, symbol},
      };
      for (const auto& [name, color, on, least] : cases)
        EXPECT_GE(contrast(color, on), least)
            << name << (scheme == ColorScheme::dark ? ", dark" : ", light") << ", over "
            << int{below.red};
    }
  }
}

}  // namespace
}  // namespace quillo
