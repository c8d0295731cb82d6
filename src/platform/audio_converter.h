// Sound in another format.
#pragma once

#include <cstddef>

#include "platform/audio_buffer.h"

namespace quillo {

enum class AudioConverterFailure { noConversion };  // between the two formats

// Any one thread at a time.
class AudioConverter {
 public:
  virtual ~AudioConverter() = default;
  // Converts `input` into at most `capacity` frames; 0 frames when none are ready yet. What the
  // resampler holds back comes out with the next call.
  virtual AudioBuffer convert(const AudioBuffer& input, std::size_t capacity) = 0;
};

}  // namespace quillo
