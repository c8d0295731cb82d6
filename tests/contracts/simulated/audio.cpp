// The simulated microphones and recording files keep the contracts.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/audio_engine_contract.h"
#include "contracts/suites/audio_file_contract.h"
#include "hosts/simulated/sound/simulated_audio_file.h"

namespace quillo::contracts {
namespace {

class SimulatedAudioEngines final : public SimulatedHost<AudioEngineHost> {
 public:
  AudioSystem& audio() override { return desktop_.audioSystem(); }
  AudioDevices& devices() override { return desktop_.audioDevices(); }
  void speak(Duration duration, double loudness) override {
    desktop_.voice().speak(duration, loudness);
  }
  std::string plugMicrophone() override {
    const std::string uid = "plugged " + std::to_string(plugged_.size());
    plugged_[uid] = &desktop_.audioDevices().plug({.uid = uid, .name = "Plugged Microphone"});
    return uid;
  }
  void unplugMicrophone(const std::string& uid) override {
    desktop_.audioDevices().unplug(*plugged_.at(uid));
  }

 private:
  std::map<std::string, simulated::Microphone*> plugged_;
};
INSTANTIATE_TEST_SUITE_P(Simulated, AudioEngineContract, hostedBy<SimulatedAudioEngines>());

class SimulatedAudioFiles final : public SimulatedHost<AudioFileHost> {
 public:
  AudioSystem& audio() override { return desktop_.audioSystem(); }
  FileManager& files() override { return desktop_.files(); }
  std::optional<double> playableSeconds(const FilePath& path) override {
    return simulated::SimulatedAudioFile::playableSeconds(files().read(path).value_or(""));
  }
  void leaveRoomFor(std::optional<std::int64_t> bytes) override {
    if (bytes)
      desktop_.files().setFreeBytes(*bytes);
    else
      desktop_.files().setFull(false);
  }
};
INSTANTIATE_TEST_SUITE_P(Simulated, AudioFileContract, hostedBy<SimulatedAudioFiles>());

}  // namespace
}  // namespace quillo::contracts
