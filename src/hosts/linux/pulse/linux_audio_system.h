// Microphones, files and conversions of this host.
#pragma once

#include <QTimer>

#include "base/log.h"
#include "hosts/linux/ffmpeg/audio_codec_module.h"
#include "hosts/linux/pulse/pulse_connection.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_engine.h"
#include "platform/audio_file.h"
#include "platform/audio_system.h"

namespace quillo::linux_host {

// Main thread.
class LinuxAudioSystem final : public AudioSystem {
 public:
  // Both outlive this and every engine.
  LinuxAudioSystem(PulseConnection& connection, Log& log);

  std::unique_ptr<AudioEngine> makeEngine() override;
  Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) override;
  Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> makeConverter(
      AudioFormat from, AudioFormat to) override;

 private:
  PulseConnection& connection_;
  Log& log_;
  AudioCodecModule module_;
  QTimer afterTheLaunch_;
};

}  // namespace quillo::linux_host
