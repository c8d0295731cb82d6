// A recording on disk.
#pragma once

#include "base/result.h"
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

enum class AudioFileFailure {
  notMade,     // there is no such encoder, or no place for the file
  notWritten,  // the disk is full, or the sound is in another format
};

// Any one thread at a time. Each call blocks for as long as encoder and disk take.
class AudioFile {
 public:
  virtual ~AudioFile() = default;  // finishes the file

  // What write() takes.
  virtual AudioFormat processingFormat() const = 0;
  // After a failure later frames may be written all the same.
  virtual Result<void, AudioFileFailure> write(const AudioBuffer& buffer) = 0;
};

}  // namespace quillo
