// Makes what records, converts and keeps sound.
#pragma once

#include <memory>

#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_engine.h"
#include "platform/audio_file.h"
#include "platform/file_path.h"

namespace quillo {

class AudioSystem {
 public:
  virtual ~AudioSystem() = default;

  virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
  // Nothing when the file cannot be made. The audio in it survives a crash of the program, up to
  // the last second. Any thread.
  virtual std::unique_ptr<AudioFile> openForWriting(const FilePath& path,
                                                    const AudioFileSettings& settings) = 0;
  // Nothing when there is no conversion between the two. Any thread.
  virtual std::unique_ptr<AudioConverter> makeConverter(AudioFormat from, AudioFormat to) = 0;
};

}  // namespace quillo
