#include "hosts/linux/pulse/linux_audio_system.h"

#include <chrono>

#include "hosts/linux/pulse/pulse_audio_engine.h"

namespace quillo::linux_host {
namespace {

// The first recording shall not wait for the codecs, nor the launch.
constexpr std::chrono::milliseconds launchTime(500);

}  // namespace

LinuxAudioSystem::LinuxAudioSystem(PulseConnection& connection, Log& log)
    : connection_(connection), log_(log) {
  afterTheLaunch_.setSingleShot(true);
  QObject::connect(&afterTheLaunch_, &QTimer::timeout, [this] { module_.prepare(); });
  afterTheLaunch_.start(launchTime);
}

std::unique_ptr<AudioEngine> LinuxAudioSystem::makeEngine() {
  return std::make_unique<PulseAudioEngine>(connection_, log_);
}

std::unique_ptr<AudioFile> LinuxAudioSystem::openForWriting(const FilePath& path,
                                                            const AudioFileSettings& settings) {
  AudioCodecs* const codecs = module_.codecs();
  std::string problem = module_.problem();
  auto file = codecs ? codecs->openForWriting(path, settings, problem) : nullptr;
  if (!file) log_.log("recorder", "a recording file cannot be made: " + problem);
  return file;
}

std::unique_ptr<AudioConverter> LinuxAudioSystem::makeConverter(AudioFormat from, AudioFormat to) {
  AudioCodecs* const codecs = module_.codecs();
  return codecs ? codecs->makeConverter(from, to) : nullptr;
}

}  // namespace quillo::linux_host
