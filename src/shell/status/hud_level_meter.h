// The live level meter of the status panel.
#pragma once

#include <array>
#include <cstddef>

#include "shell/palette.h"

namespace quillo {

// A row of bars that scrolls to the left with every new level. Its colour rises with the loudest
// level at once and falls slowly, so that a pause between words does not flicker. Lengths are in
// logical pixels.
class HUDLevelMeter {
 public:
  static constexpr std::size_t barCount = 64;
  static constexpr double spacing = 1.5;
  static constexpr double minimumBarWidth = 1.2;
  static constexpr double minimumBarHeight = 1.5;

  // 0...1; a level equal to the last one changes nothing.
  void setLevel(float level);
  // Either change forgets all levels: they may also have come before a recording, or behind it.
  void setActive(bool isActive);

  bool isActive() const { return isActive_; }
  // Oldest first.
  const std::array<float, barCount>& levels() const { return levels_; }
  float peak() const { return peak_; }

  static double barWidth(double availableWidth);
  static double barHeight(float level, double availableHeight);
  Color barColor(ColorScheme scheme) const;

 private:
  float level_ = 0;
  bool isActive_ = false;
  std::array<float, barCount> levels_{};
  float peak_ = 0;
};

}  // namespace quillo
