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

Result<std::unique_ptr<AudioFile>, AudioFileFailure> LinuxAudioSystem::openForWriting(
    const FilePath& path, const AudioFileSettings& settings) {
  AudioCodecs* const codecs = module_.codecs();
  auto file = codecs ? codecs->openForWriting(path, settings) : Problem{module_.problem()};
  if (file) return *std::move(file);
  log_.log("recorder", "a recording file cannot be made: " + file.error().words);
  return AudioFileFailure::notMade;
}

Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> LinuxAudioSystem::makeConverter(
    AudioFormat from, AudioFormat to) {
  AudioCodecs* const codecs = module_.codecs();
  auto converter = codecs ? codecs->makeConverter(from, to) : nullptr;
  if (!converter) return AudioConverterFailure::noConversion;
  return converter;
}

}  // namespace quillo::linux_host
