// A recording on disk.
#pragma once

#include "platform/audio_buffer.h"

namespace quillo {

// Values of the encoder settings of a recording file.
struct AudioFileSettings {
  enum class Format { mpeg4AAC };
  enum class BitRateStrategy { longTermAverage };

  Format format = Format::mpeg4AAC;
  double sampleRate = 0;
  int channels = 0;
  int bitRate = 0;  // bits a second
  BitRateStrategy bitRateStrategy = BitRateStrategy::longTermAverage;
  int encoderQuality = 0;
};

// Any one thread at a time.
class AudioFile {
 public:
  virtual ~AudioFile() = default;  // finishes the file

  // What write() takes.
  virtual AudioFormat processingFormat() const = 0;
  // False when the frames could not be written; later ones may be.
  virtual bool write(const AudioBuffer& buffer) = 0;
};

}  // namespace quillo
