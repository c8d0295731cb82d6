// What the module of the codecs gives to the program.
extern "C" {
#include <libavutil/log.h>
}

#include "hosts/linux/ffmpeg/audio_codecs.h"
#include "hosts/linux/ffmpeg/module/ffmpeg_audio_file.h"
#include "hosts/linux/ffmpeg/module/swresample_converter.h"

namespace quillo::linux_host {
namespace {

class FFmpegCodecs final : public AudioCodecs {
 public:
  // The libraries would write their statistics to standard error.
  FFmpegCodecs() { av_log_set_level(AV_LOG_ERROR); }

  Result<std::unique_ptr<AudioFile>, Problem> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) override {
    return FFmpegAudioFile::create(path, settings);
  }
  std::unique_ptr<AudioConverter> makeConverter(AudioFormat from, AudioFormat to) override {
    return SwresampleConverter::create(from, to);
  }
};

}  // namespace

extern "C" AudioCodecs* quilloAudioCodecs() {
  static FFmpegCodecs codecs;
  return &codecs;
}

}  // namespace quillo::linux_host
