// The microphones of the sound server.
#pragma once

#include "hosts/linux/pulse/pulse_connection.h"
#include "platform/audio_devices.h"

namespace quillo::linux_host {

// Its sources; the monitors of outputs are hidden ones, and never the default.
class PulseAudioDevices final : public AudioDevices {
 public:
  explicit PulseAudioDevices(PulseConnection& connection) : connection_(connection) {}

  Result<std::vector<AudioDeviceID>, AudioDevicesFailure> devices() const override;
  std::optional<AudioDeviceID> defaultInputDevice() const override;
  std::optional<std::string> uid(AudioDeviceID device) const override;
  std::optional<std::string> name(AudioDeviceID device) const override;
  std::optional<bool> isHidden(AudioDeviceID device) const override;
  std::optional<AudioTransport> transport(AudioDeviceID device) const override;
  std::optional<std::vector<int>> inputStreamChannels(AudioDeviceID device) const override;
  [[nodiscard]] std::shared_ptr<void> observeDevices(std::function<void()> changed) override;

 private:
  std::optional<PulseSource> source(AudioDeviceID device) const;

  PulseConnection& connection_;
};

}  // namespace quillo::linux_host
