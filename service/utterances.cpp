#include "service/utterances.h"

#include <cstdlib>

#include "service/audio_decoder.h"

namespace quillo::service {
namespace {

constexpr std::size_t shortest = 15 * Audio::sampleRate;
constexpr std::size_t longest = 30 * Audio::sampleRate;
constexpr std::size_t window = Audio::sampleRate / 10;
constexpr std::size_t hop = Audio::sampleRate / 50;

std::uint64_t loudness(std::span<const std::int16_t> samples) {
  std::uint64_t sum = 0;
  for (const int sample : samples) sum += static_cast<std::uint64_t>(std::abs(sample));
  return sum;
}

// The middle of the quietest window in which a cut may lie.
std::size_t quietestCut(std::span<const std::int16_t> samples) {
  std::size_t best = shortest;
  std::uint64_t least = UINT64_MAX;
  for (std::size_t begin = shortest; begin + window <= longest; begin += hop) {
    const std::uint64_t here = loudness(samples.subspan(begin, window));
    if (here >= least) continue;
    least = here;
    best = begin + window / 2;
  }
  return best;
}

}  // namespace

std::vector<std::span<const std::int16_t>> utterances(std::span<const std::int16_t> samples) {
  std::vector<std::span<const std::int16_t>> pieces;
  while (samples.size() > longest) {
    const std::size_t cut = quietestCut(samples);
    pieces.push_back(samples.first(cut));
    samples = samples.subspan(cut);
  }
  if (!samples.empty()) pieces.push_back(samples);
  return pieces;
}

}  // namespace quillo::service
