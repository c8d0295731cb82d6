// Makes what records, converts and keeps sound.
#pragma once

#include <memory>

#include "base/result.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_engine.h"
#include "platform/audio_file.h"
#include "platform/file_path.h"

namespace quillo {

class AudioSystem {
 public:
  virtual ~AudioSystem() = default;

  // Main thread.
  virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
  // The audio in it survives a crash of the program, up to the last second; when it cannot be made,
  // there is no file. Any thread; blocks for as long as the disk takes, and in the first half
  // second of the program until the encoders are there.
  virtual Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) = 0;
  // Any thread; blocks as long for the encoders.
  virtual Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> makeConverter(
      AudioFormat from, AudioFormat to) = 0;
};

}  // namespace quillo
