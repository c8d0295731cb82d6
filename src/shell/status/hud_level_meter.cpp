#include "shell/status/hud_level_meter.h"

#include <algorithm>
#include <limits>

namespace quillo {
namespace {

constexpr double gapsTogether = (HUDLevelMeter::barCount - 1) * HUDLevelMeter::spacing;
constexpr double restingOpacity = 0.25;

struct PeakColor {
  float atLeast;
  Color dark;
  Color light;
};

// Speech that is too quiet to be understood well is shown as a warning.
constexpr PeakColor peakColors[] = {
    {0.5f, {34, 197, 94}, {21, 128, 61}},
    {0.15f, {245, 158, 11}, {180, 83, 9}},
    {-std::numeric_limits<float>::infinity(), {239, 68, 68}, {220, 38, 38}},
};

}  // namespace

void HUDLevelMeter::setLevel(float level) {
  if (level == level_) return;
  level_ = level;
  std::shift_left(levels_.begin(), levels_.end(), 1);
  levels_.back() = std::clamp(level, 0.0f, 1.0f);
  peak_ = level > peak_ ? level : level * 0.1f + peak_ * 0.9f;
}

void HUDLevelMeter::setActive(bool isActive) {
  if (isActive == isActive_) return;
  isActive_ = isActive;
  levels_.fill(0);
  peak_ = 0;
}

double HUDLevelMeter::barWidth(double availableWidth) {
  return std::max(minimumBarWidth, (availableWidth - gapsTogether) / barCount);
}

double HUDLevelMeter::barHeight(float level, double availableHeight) {
  return std::max(minimumBarHeight,
                  minimumBarHeight + std::max(0.0, availableHeight - minimumBarHeight) *
                                         static_cast<double>(level));
}

Color HUDLevelMeter::barColor(ColorScheme scheme) const {
  if (!isActive_) return paletteOf(scheme).secondary.withOpacity(restingOpacity);
  const PeakColor& color = *std::ranges::find_if(
      peakColors, [this](const PeakColor& candidate) { return peak_ >= candidate.atLeast; });
  return scheme == ColorScheme::dark ? color.dark : color.light;
}

}  // namespace quillo
