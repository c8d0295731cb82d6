// Engines, files and converters of the simulated desktop.
#pragma once

#include "hosts/simulated/sound/simulated_audio_engine.h"
#include "hosts/simulated/storage/memory_file_manager.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_engine.h"
#include "platform/audio_file.h"
#include "platform/audio_system.h"

namespace quillo::simulated {

class SimulatedAudioSystem final : public AudioSystem {
 public:
  SimulatedAudioSystem(Timeline& timeline, SimulatedAudioDevices& devices, const Voice& voice,
                       MemoryFileManager& files)
      : timeline_(timeline), devices_(devices), voice_(voice), files_(files) {}

  std::unique_ptr<AudioEngine> makeEngine() override;
  Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) override;
  Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> makeConverter(
      AudioFormat from, AudioFormat to) override;

  // --- Driver ---

  // Voice processing fails with these words; nothing ends that.
  void refuseVoiceProcessing(std::optional<std::string> error) {
    engineFaults_.voiceProcessingError = std::move(error);
  }
  // Choosing a device fails with this error.
  void refuseDevice(AudioEngineError error) { engineFaults_.setDeviceError = error; }
  // No file opens, or no converter is made, after so many more that do.
  void refuseFilesAfter(int count) { filesLeft_ = count; }
  void refuseConverters(bool refused) { refusesConverters_ = refused; }

  // Engines that hold a microphone open.
  int runningEngines() const { return static_cast<int>(openInputs().size()); }
  const std::vector<SimulatedAudioEngine::OpenInput>& openInputs() const {
    return engineFaults_.openInputs;
  }

 private:
  Timeline& timeline_;
  SimulatedAudioDevices& devices_;
  const Voice& voice_;
  MemoryFileManager& files_;
  SimulatedAudioEngine::Faults engineFaults_;
  std::optional<int> filesLeft_;
  bool refusesConverters_ = false;
};

}  // namespace quillo::simulated
