// Recording files and conversions of sound.
#pragma once

#include <memory>
#include <string>

#include "base/result.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_file.h"
#include "platform/file_path.h"

namespace quillo::linux_host {

class AudioCodecs {
 public:
  virtual ~AudioCodecs() = default;

  // When the file or its encoder cannot be made, there is no file.
  virtual Result<std::unique_ptr<AudioFile>, Problem> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) = 0;
  // Null when there is no such conversion.
  virtual std::unique_ptr<AudioConverter> makeConverter(AudioFormat from, AudioFormat to) = 0;
};

}  // namespace quillo::linux_host
