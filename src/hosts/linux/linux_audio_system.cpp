#include "hosts/linux/linux_audio_system.h"

extern "C" {
#include <libavutil/log.h>
}

#include "hosts/linux/ffmpeg_audio_file.h"
#include "hosts/linux/pulse_audio_engine.h"
#include "hosts/linux/swresample_converter.h"

namespace quillo::linux_host {

LinuxAudioSystem::LinuxAudioSystem(PulseConnection& connection, Log& log)
    : connection_(connection), log_(log) {
  // The libraries would write their statistics to standard error.
  av_log_set_level(AV_LOG_ERROR);
}

std::unique_ptr<AudioEngine> LinuxAudioSystem::makeEngine() {
  return std::make_unique<PulseAudioEngine>(connection_, log_);
}

std::unique_ptr<AudioFile> LinuxAudioSystem::openForWriting(const FilePath& path,
                                                            const AudioFileSettings& settings) {
  std::string problem;
  auto file = FFmpegAudioFile::create(path, settings, problem);
  if (!file) log_.log("recorder", "a recording file cannot be made: " + problem);
  return file;
}

std::unique_ptr<AudioConverter> LinuxAudioSystem::makeConverter(AudioFormat from, AudioFormat to) {
  return SwresampleConverter::create(from, to);
}

}  // namespace quillo::linux_host
