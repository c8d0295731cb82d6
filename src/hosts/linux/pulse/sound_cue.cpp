#include "hosts/linux/pulse/sound_cue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace quillo::linux_host {
namespace {

// A tone that begins at once, glides from one pitch to the other and dies away.
struct Cue {
  std::string_view name;
  double firstHertz;
  double lastHertz;
  double overtone;  // times the pitch; a bell has one that is no whole number
  double overtoneShare;
  double seconds;
  double halfLifeSeconds;
};

constexpr auto cues = std::to_array<Cue>({
    {"Tink", 2093.0, 2093.0, 2.76, 0.35, 0.28, 0.035},
    {"Pop", 640.0, 260.0, 2.0, 0.15, 0.12, 0.018},
});

constexpr double loudness = 0.35;  // of full scale
constexpr double attackSeconds = 0.002;

double amplitude(const Cue& cue, double second) {
  const double attack = std::min(second / attackSeconds, 1.0);
  const double release = std::min((cue.seconds - second) / attackSeconds, 1.0);
  return loudness * attack * release * std::exp2(-second / cue.halfLifeSeconds);
}

std::vector<std::int16_t> render(const Cue& cue) {
  const auto count = static_cast<std::size_t>(cue.seconds * cueSampleRate);
  std::vector<std::int16_t> samples(count);
  double turns = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double second = static_cast<double>(i) / cueSampleRate;
    const double progress = second / cue.seconds;
    const double angle = 2 * std::numbers::pi * turns;
    const double wave = (std::sin(angle) + cue.overtoneShare * std::sin(cue.overtone * angle)) /
                        (1 + cue.overtoneShare);
    samples[i] = static_cast<std::int16_t>(std::lround(32767 * amplitude(cue, second) * wave));
    turns += (cue.firstHertz + (cue.lastHertz - cue.firstHertz) * progress) / cueSampleRate;
  }
  return samples;
}

}  // namespace

std::optional<std::vector<std::int16_t>> soundCue(std::string_view name) {
  const auto* const cue = std::ranges::find(cues, name, &Cue::name);
  if (cue == cues.end()) return std::nullopt;
  return render(*cue);
}

}  // namespace quillo::linux_host
