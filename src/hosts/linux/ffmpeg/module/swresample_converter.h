// Another rate or channel count, by the FFmpeg resampler.
#pragma once

#include <memory>

#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"

struct SwrContext;

namespace quillo::linux_host {

// One channel is the mean of those of the input; otherwise the counts are the same.
class SwresampleConverter final : public AudioConverter {
 public:
  // Null when there is no conversion.
  static std::unique_ptr<SwresampleConverter> create(AudioFormat from, AudioFormat to);
  ~SwresampleConverter() override;

  AudioBuffer convert(const AudioBuffer& input, std::size_t capacity) override;

 private:
  SwresampleConverter(AudioFormat to, SwrContext* resampler) : to_(to), resampler_(resampler) {}
  AudioBuffer mixed(const AudioBuffer& input) const;

  const AudioFormat to_;
  SwrContext* const resampler_;
};

}  // namespace quillo::linux_host
