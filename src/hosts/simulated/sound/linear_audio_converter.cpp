#include "hosts/simulated/sound/linear_audio_converter.h"

#include <algorithm>

namespace quillo::simulated {

std::unique_ptr<LinearAudioConverter> LinearAudioConverter::create(AudioFormat from,
                                                                   AudioFormat to) {
  const bool hasFrames = from.sampleRate >= 1 && to.sampleRate >= 1;
  const bool canMap = to.channels > 0 && (to.channels == 1 || to.channels == from.channels);
  if (!hasFrames || from.channels <= 0 || !canMap) return nullptr;
  return std::unique_ptr<LinearAudioConverter>(new LinearAudioConverter(from, to));
}

LinearAudioConverter::LinearAudioConverter(AudioFormat from, AudioFormat to)
    : to_(to),
      fromRate_(static_cast<std::int64_t>(from.sampleRate)),
      toRate_(static_cast<std::int64_t>(to.sampleRate)),
      held_(static_cast<std::size_t>(to.channels)) {}

void LinearAudioConverter::take(const AudioBuffer& input) {
  const int inputChannels = input.format().channels;
  for (int channel = 0; channel < to_.channels; ++channel) {
    std::vector<float>& plane = held_[static_cast<std::size_t>(channel)];
    const std::size_t before = plane.size();
    plane.insert(plane.end(), input.channel(channel), input.channel(channel) + input.frames());
    if (to_.channels == inputChannels) continue;
    for (std::size_t frame = 0; frame < input.frames(); ++frame) {
      float sum = 0;
      for (int source = 0; source < inputChannels; ++source) sum += input.channel(source)[frame];
      plane[before + frame] = sum / static_cast<float>(inputChannels);
    }
  }
}

std::size_t LinearAudioConverter::framesReady() const {
  // An output frame is ready when its whole step of input has been heard.
  const std::int64_t available = static_cast<std::int64_t>(held_.front().size()) * toRate_;
  return static_cast<std::size_t>(std::max<std::int64_t>(0, (available - position_) / fromRate_));
}

AudioBuffer LinearAudioConverter::convert(const AudioBuffer& input, std::size_t capacity) {
  take(input);
  const std::size_t frames = std::min(capacity, framesReady());
  AudioBuffer output(to_, frames);
  for (int channel = 0; channel < to_.channels; ++channel) {
    const std::vector<float>& plane = held_[static_cast<std::size_t>(channel)];
    interpolate(plane.data(), plane.size(), output.channel(channel), frames);
  }
  position_ += static_cast<std::int64_t>(frames) * fromRate_;
  forgetUsed();
  return output;
}

void LinearAudioConverter::interpolate(const float* input, std::size_t inputFrames, float* output,
                                       std::size_t outputFrames) const {
  // Whole frames and the rest are stepped apart: a division a frame would be most of the work.
  const auto wholeStep = static_cast<std::size_t>(fromRate_ / toRate_);
  const std::int64_t restStep = fromRate_ % toRate_;
  auto at = static_cast<std::size_t>(position_ / toRate_);
  std::int64_t rest = position_ % toRate_;
  for (std::size_t frame = 0; frame < outputFrames; ++frame) {
    output[frame] = input[at];
    if (rest != 0 && at + 1 < inputFrames)
      output[frame] +=
          (input[at + 1] - input[at]) * static_cast<float>(rest) / static_cast<float>(toRate_);
    at += wholeStep;
    rest += restStep;
    if (rest >= toRate_) {
      rest -= toRate_;
      ++at;
    }
  }
}

void LinearAudioConverter::forgetUsed() {
  const std::int64_t used =
      std::min(position_ / toRate_, static_cast<std::int64_t>(held_.front().size()));
  for (std::vector<float>& plane : held_) plane.erase(plane.begin(), plane.begin() + used);
  position_ -= used * toRate_;
}

}  // namespace quillo::simulated
