#include "hosts/simulated/sound/simulated_audio_devices.h"

namespace quillo::simulated {

SimulatedAudioDevices::SimulatedAudioDevices(MainThread& mainThread) : mainThread_(mainThread) {
  default_ = &plug({.uid = "BuiltInMicrophoneDevice",
                    .name = "Built-in Microphone",
                    .transport = AudioTransport::builtIn});
  plug({.uid = "BuiltInSpeakerDevice",
        .name = "Built-in Speakers",
        .transport = AudioTransport::builtIn,
        .inputStreamChannels = std::vector<int>()});
}

Microphone* SimulatedAudioDevices::find(AudioDeviceID device) const {
  for (const auto& microphone : devices_) {
    if (microphone->id() == device && microphone->isConnected()) return microphone.get();
  }
  return nullptr;
}

Microphone* SimulatedAudioDevices::defaultMicrophone() const {
  if (default_ && default_->isConnected()) return default_;
  for (const auto& microphone : devices_) {
    if (microphone->isConnected() && microphone->hasInput()) return microphone.get();
  }
  return nullptr;
}

Result<std::vector<AudioDeviceID>, AudioDevicesFailure> SimulatedAudioDevices::devices() const {
  if (isListUnreadable_) return AudioDevicesFailure::noSoundSystem;
  std::vector<AudioDeviceID> ids;
  for (const auto& microphone : devices_) {
    if (microphone->isConnected()) ids.push_back(microphone->id());
  }
  return ids;
}

std::optional<AudioDeviceID> SimulatedAudioDevices::defaultInputDevice() const {
  const Microphone* microphone = defaultMicrophone();
  return microphone ? std::optional(microphone->id()) : std::nullopt;
}

std::optional<std::string> SimulatedAudioDevices::uid(AudioDeviceID device) const {
  const Microphone* found = find(device);
  return found ? found->description().uid : std::nullopt;
}

std::optional<std::string> SimulatedAudioDevices::name(AudioDeviceID device) const {
  const Microphone* found = find(device);
  return found ? found->description().name : std::nullopt;
}

std::optional<bool> SimulatedAudioDevices::isHidden(AudioDeviceID device) const {
  const Microphone* found = find(device);
  return found ? found->description().isHidden : std::nullopt;
}

std::optional<AudioTransport> SimulatedAudioDevices::transport(AudioDeviceID device) const {
  const Microphone* found = find(device);
  return found ? found->description().transport : std::nullopt;
}

std::optional<std::vector<int>> SimulatedAudioDevices::inputStreamChannels(
    AudioDeviceID device) const {
  const Microphone* found = find(device);
  return found ? found->description().inputStreamChannels : std::nullopt;
}

std::shared_ptr<void> SimulatedAudioDevices::observeDevices(std::function<void()> changed) {
  auto observer = std::make_shared<std::function<void()>>(std::move(changed));
  observers_.push_back(observer);
  return observer;
}

void SimulatedAudioDevices::tellObservers() {
  std::erase_if(observers_, [](const auto& old) { return old.expired(); });
  for (const auto& weak : observers_) {
    mainThread_.post([weak] {
      if (const auto observer = weak.lock()) (*observer)();
    });
  }
}

Microphone& SimulatedAudioDevices::plug(Microphone::Description description) {
  devices_.push_back(
      std::make_unique<Microphone>(AudioDeviceID{nextId_++}, std::move(description)));
  tellObservers();
  return *devices_.back();
}

void SimulatedAudioDevices::plugAgain(Microphone& microphone) {
  microphone.setConnected(true);
  tellObservers();
}

void SimulatedAudioDevices::unplug(Microphone& microphone) {
  microphone.setConnected(false);
  tellObservers();
}

}  // namespace quillo::simulated
