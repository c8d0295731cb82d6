// Changes of sample rate by linear interpolation.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"

namespace quillo::simulated {

// Over time it gives exactly as many frames as the ratio of the rates says. Channels are kept, or
// mixed into one.
class LinearAudioConverter final : public AudioConverter {
 public:
  // Null for formats without frames or channels, and for channels that are neither kept nor mixed.
  static std::unique_ptr<LinearAudioConverter> create(AudioFormat from, AudioFormat to);

  AudioBuffer convert(const AudioBuffer& input, std::size_t capacity) override;

 private:
  LinearAudioConverter(AudioFormat from, AudioFormat to);

  void take(const AudioBuffer& input);
  // Frames that can be made of what is held.
  std::size_t framesReady() const;
  void interpolate(const float* input, std::size_t inputFrames, float* output,
                   std::size_t outputFrames) const;
  void forgetUsed();

  AudioFormat to_;
  std::int64_t fromRate_;
  std::int64_t toRate_;
  // Input that is still needed, one plane an output channel.
  std::vector<std::vector<float>> held_;
  // Where the next output frame lies in it, in 1/toRate_ of an input frame.
  std::int64_t position_ = 0;
};

}  // namespace quillo::simulated
