// The meter's numbers, and the contrast of the colours.
#include "shell/hud_level_meter.h"

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
  EXPECT_EQ(levels[0], 0);
  EXPECT_EQ(levels[63], 0);
  EXPECT_EQ(meter.peak(), 0);
}

TEST(HUDLevelMeterTest, TheColourRisesAtOnceAndFallsSlowly) {
  HUDLevelMeter meter;
  EXPECT_EQ(meter.barColor(ColorScheme::dark), darkPalette.secondary.withOpacity(0.25));
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

TEST(HUDLevelMeterTest, BarsShareTheRoom) {
  EXPECT_DOUBLE_EQ(HUDLevelMeter::barWidth(94.5 + 64 * 2.5), 2.5);
  EXPECT_DOUBLE_EQ(HUDLevelMeter::barWidth(100), 1.2);
  EXPECT_DOUBLE_EQ(HUDLevelMeter::barHeight(0, 24), 1.5);
  EXPECT_DOUBLE_EQ(HUDLevelMeter::barHeight(1, 24), 24);
  EXPECT_DOUBLE_EQ(HUDLevelMeter::barHeight(0.5f, 24), 12.75);
  EXPECT_DOUBLE_EQ(HUDLevelMeter::barHeight(1, 0), 1.5);
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

TEST(PaletteTest, TextAndSymbolsStandOutInBothSchemes) {
  for (const Palette& palette : {lightPalette, darkPalette}) {
    const Color& ground = palette.opaqueMaterial;
    EXPECT_GE(contrast(palette.primary, ground), 7);
    for (const Color& text :
         {palette.secondary, palette.red, palette.orange, palette.green, palette.accent})
      EXPECT_GE(contrast(text, ground), 4.5);
    EXPECT_GE(contrast(palette.onAccent, palette.accent), 4.5);
  }
}

}  // namespace
}  // namespace quillo
