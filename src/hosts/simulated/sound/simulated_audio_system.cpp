#include "hosts/simulated/sound/simulated_audio_system.h"

#include "hosts/simulated/sound/linear_audio_converter.h"
#include "hosts/simulated/sound/simulated_audio_file.h"

namespace quillo::simulated {

std::unique_ptr<AudioEngine> SimulatedAudioSystem::makeEngine() {
  return std::make_unique<SimulatedAudioEngine>(timeline_, devices_, voice_, engineFaults_);
}

Result<std::unique_ptr<AudioFile>, AudioFileFailure> SimulatedAudioSystem::openForWriting(
    const FilePath& path, const AudioFileSettings& settings) {
  if (filesLeft_ && (*filesLeft_)-- <= 0) return AudioFileFailure::notMade;
  if (!files_.createEmpty(path)) return AudioFileFailure::notMade;
  auto file = SimulatedAudioFile::create(files_, path, settings);
  if (file) return file;
  files_.remove(path);
  return AudioFileFailure::notMade;
}

Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> SimulatedAudioSystem::makeConverter(
    AudioFormat from, AudioFormat to) {
  auto converter = refusesConverters_ ? nullptr : LinearAudioConverter::create(from, to);
  if (!converter) return AudioConverterFailure::noConversion;
  return converter;
}

}  // namespace quillo::simulated
