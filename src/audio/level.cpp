#include "audio/level.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace quillo {
namespace {

constexpr float floorDecibels = -40.0f;
constexpr float rangeDecibels = 30.0f;

float meanSquare(std::span<const float> samples) {
  float sum = 0;
  for (const float sample : samples) sum += sample * sample;
  return sum / static_cast<float>(samples.size());
}

}  // namespace

std::optional<float> computeLevel(const AudioBuffer& buffer) {
  if (buffer.format().channels == 0 || buffer.frames() == 0) return std::nullopt;
  const float power = meanSquare({buffer.channel(0), buffer.frames()});
  // Samples that are no numbers are no sound either.
  if (!(power > 0)) return 0.0f;
  const float decibels = 20.0f * std::log10(std::sqrt(power));
  return std::clamp((decibels - floorDecibels) / rangeDecibels, 0.0f, 1.0f);
}

}  // namespace quillo
