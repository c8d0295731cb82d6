#include "hosts/linux/pulse/pulse_audio_devices.h"

#include <utility>

namespace quillo::linux_host {
namespace {

AudioDeviceID idOf(const PulseSource& source) {
  return AudioDeviceID{source.index};
}

}  // namespace

std::optional<PulseSource> PulseAudioDevices::source(AudioDeviceID device) const {
  const auto inputs = connection_.inputs();
  if (!inputs) return std::nullopt;
  const PulseSource* const found = inputs->find(static_cast<std::uint32_t>(device));
  if (!found) return std::nullopt;
  return *found;
}

Result<std::vector<AudioDeviceID>, AudioDevicesFailure> PulseAudioDevices::devices() const {
  const auto inputs = connection_.inputs();
  if (!inputs) return AudioDevicesFailure::noSoundSystem;
  std::vector<AudioDeviceID> ids;
  for (const PulseSource& source : inputs->sources) ids.push_back(idOf(source));
  return ids;
}

std::optional<AudioDeviceID> PulseAudioDevices::defaultInputDevice() const {
  const auto inputs = connection_.inputs();
  const PulseSource* const chosen = inputs ? inputs->defaultMicrophone() : nullptr;
  if (!chosen) return std::nullopt;
  return idOf(*chosen);
}

std::optional<std::string> PulseAudioDevices::uid(AudioDeviceID device) const {
  const auto found = source(device);
  if (!found) return std::nullopt;
  return found->name;
}

std::optional<std::string> PulseAudioDevices::name(AudioDeviceID device) const {
  const auto found = source(device);
  if (!found) return std::nullopt;
  return found->description;
}

std::optional<bool> PulseAudioDevices::isHidden(AudioDeviceID device) const {
  const auto found = source(device);
  if (!found) return std::nullopt;
  return found->isMonitor;
}

std::optional<AudioTransport> PulseAudioDevices::transport(AudioDeviceID device) const {
  const auto found = source(device);
  if (!found) return std::nullopt;
  return found->transport;
}

std::optional<std::vector<int>> PulseAudioDevices::inputStreamChannels(AudioDeviceID device) const {
  const auto found = source(device);
  if (!found) return std::nullopt;
  return std::vector{found->format.channels};
}

std::shared_ptr<void> PulseAudioDevices::observeDevices(std::function<void()> changed) {
  return connection_.observe(std::move(changed));
}

}  // namespace quillo::linux_host
