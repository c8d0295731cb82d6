#include "hosts/simulated/sound/voice.h"

#include <algorithm>
#include <cmath>

namespace quillo::simulated {
namespace {

constexpr std::size_t framesPerHalfWave = 64;

float amplitudeOf(double loudness) {
  return static_cast<float>(std::pow(10.0, loudness / 20.0));
}

// One wave sample by sample, and the rest as copies of what is there, twice as much each time.
void fillWithSquareWave(float* samples, std::size_t count, float amplitude) {
  constexpr std::size_t wave = 2 * framesPerHalfWave;
  for (std::size_t at = 0; at < std::min(wave, count); ++at)
    samples[at] = at < framesPerHalfWave ? amplitude : -amplitude;
  for (std::size_t done = wave; done < count; done *= 2)
    std::copy_n(samples, std::min(done, count - done), samples + done);
}

}  // namespace

MonotonicTime Voice::append(Duration duration) {
  const MonotonicTime begin = std::max(end_, timeline_.now());
  end_ = begin + duration;
  return begin;
}

Voice& Voice::speak(Duration duration, double loudness) {
  const MonotonicTime begin = append(duration);
  utterances_.push_back({begin, end_, amplitudeOf(loudness)});
  return *this;
}

Voice& Voice::pause(Duration duration) {
  append(duration);
  return *this;
}

void Voice::fallSilent() {
  end_ = timeline_.now();
  std::erase_if(utterances_, [this](const Utterance& said) { return said.begin >= end_; });
  for (Utterance& said : utterances_) said.end = std::min(said.end, end_);
}

void Voice::setBackground(std::optional<double> loudness) {
  background_ = loudness ? amplitudeOf(*loudness) : 0;
}

void Voice::render(MonotonicTime start, AudioBuffer& buffer) const {
  const std::size_t frames = buffer.frames();
  const auto frameAt = [&](MonotonicTime time) {
    const double frame = std::round(toSeconds(time - start) * buffer.format().sampleRate);
    return static_cast<std::size_t>(std::clamp(frame, 0.0, static_cast<double>(frames)));
  };
  for (int channel = 0; channel < buffer.format().channels; ++channel) {
    float* samples = buffer.channel(channel);
    if (background_ != 0) fillWithSquareWave(samples, frames, background_);
    for (const Utterance& said : utterances_) {
      const std::size_t begin = frameAt(said.begin);
      const std::size_t end = frameAt(said.end);
      if (begin < end) fillWithSquareWave(samples + begin, end - begin, said.amplitude);
    }
  }
}

}  // namespace quillo::simulated
