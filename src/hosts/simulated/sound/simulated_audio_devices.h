// The sound devices that are plugged in.
#pragma once

#include <memory>
#include <vector>

#include "base/main_thread.h"
#include "hosts/simulated/sound/microphone.h"
#include "platform/audio_devices.h"

namespace quillo::simulated {

// At first there are a built-in microphone, which is the default, and speakers.
class SimulatedAudioDevices final : public AudioDevices {
 public:
  explicit SimulatedAudioDevices(MainThread& mainThread);

  Result<std::vector<AudioDeviceID>, AudioDevicesFailure> devices() const override;
  std::optional<AudioDeviceID> defaultInputDevice() const override;
  std::optional<std::string> uid(AudioDeviceID device) const override;
  std::optional<std::string> name(AudioDeviceID device) const override;
  std::optional<bool> isHidden(AudioDeviceID device) const override;
  std::optional<AudioTransport> transport(AudioDeviceID device) const override;
  std::optional<std::vector<int>> inputStreamChannels(AudioDeviceID device) const override;
  [[nodiscard]] std::shared_ptr<void> observeDevices(std::function<void()> changed) override;

  // Null when it is not plugged in.
  Microphone* find(AudioDeviceID device) const;
  // The default one when it is plugged in, otherwise the first that can record.
  Microphone* defaultMicrophone() const;

  // --- Driver ---

  Microphone& builtInMicrophone() { return *devices_.front(); }
  // The device lives as long as the desktop, also when it is unplugged.
  Microphone& plug(Microphone::Description description);
  void plugAgain(Microphone& microphone);
  void unplug(Microphone& microphone);
  void setDefault(Microphone& microphone) { default_ = &microphone; }
  // The list itself cannot be read.
  void setListUnreadable(bool unreadable) { isListUnreadable_ = unreadable; }

 private:
  void tellObservers();

  MainThread& mainThread_;
  std::vector<std::unique_ptr<Microphone>> devices_;
  Microphone* default_ = nullptr;
  std::uint32_t nextId_ = 40;
  bool isListUnreadable_ = false;
  std::vector<std::weak_ptr<std::function<void()>>> observers_;
};

}  // namespace quillo::simulated
