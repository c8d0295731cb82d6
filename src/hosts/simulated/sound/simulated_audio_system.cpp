#include "hosts/simulated/sound/simulated_audio_system.h"

#include "hosts/simulated/sound/linear_audio_converter.h"
#include "hosts/simulated/sound/simulated_audio_file.h"

namespace quillo::simulated {

std::unique_ptr<AudioEngine> SimulatedAudioSystem::makeEngine() {
  return std::make_unique<SimulatedAudioEngine>(timeline_, devices_, voice_, engineFaults_);
}

std::unique_ptr<AudioFile> SimulatedAudioSystem::openForWriting(const FilePath& path,
                                                                const AudioFileSettings& settings) {
  if (filesLeft_ && (*filesLeft_)-- <= 0) return nullptr;
  if (!files_.createEmpty(path)) return nullptr;
  auto file = SimulatedAudioFile::create(files_, path, settings);
  if (!file) files_.remove(path);
  return file;
}

std::unique_ptr<AudioConverter> SimulatedAudioSystem::makeConverter(AudioFormat from,
                                                                    AudioFormat to) {
  if (refusesConverters_) return nullptr;
  return LinearAudioConverter::create(from, to);
}

}  // namespace quillo::simulated
