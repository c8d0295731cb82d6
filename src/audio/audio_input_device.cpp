#include "audio/audio_input_device.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace quillo {
namespace {

constexpr std::array systemAggregateMarks = {std::string_view("CADefaultDeviceAggregate"),
                                             std::string_view("VPAUAggregateAudioDevice")};

bool hasInputChannels(const AudioDevices& devices, AudioDeviceID device) {
  const auto channels = devices.inputStreamChannels(device);
  return channels && std::accumulate(channels->begin(), channels->end(), 0) > 0;
}

std::optional<std::string> notEmpty(std::optional<std::string> text) {
  return text && !text->empty() ? text : std::nullopt;
}

// A device that bears such a UID and yet is known to be of another kind belongs to the user.
bool isHiddenAggregate(const AudioDevices& devices, AudioDeviceID device, std::string_view uid) {
  if (!MacAudioInputDevice::isSystemAggregate(uid)) return false;
  const auto transport = devices.transport(device);
  return !transport || *transport == AudioTransport::aggregate;
}

std::optional<MacAudioInputDevice> choosable(const AudioDevices& devices, AudioDeviceID device) {
  if (!hasInputChannels(devices, device)) return std::nullopt;
  if (devices.isHidden(device).value_or(false)) return std::nullopt;
  const auto uid = notEmpty(devices.uid(device));
  if (!uid) return std::nullopt;
  const auto name = notEmpty(devices.name(device));
  if (!name || isHiddenAggregate(devices, device, *uid)) return std::nullopt;
  return MacAudioInputDevice{*uid, *name};
}

}  // namespace

std::vector<MacAudioInputDevice> MacAudioInputDevice::availableDevices(
    const AudioDevices& devices) {
  std::vector<MacAudioInputDevice> available;
  for (const AudioDeviceID device : devices.devices().value_or(std::vector<AudioDeviceID>{})) {
    if (auto found = choosable(devices, device)) available.push_back(std::move(*found));
  }
  return available;
}

std::optional<AudioDeviceID> MacAudioInputDevice::deviceID(const AudioDevices& devices,
                                                           std::string_view uid) {
  if (uid.empty()) return std::nullopt;
  for (const AudioDeviceID device : devices.devices().value_or(std::vector<AudioDeviceID>{})) {
    if (devices.uid(device) == uid) return device;
  }
  return std::nullopt;
}

bool MacAudioInputDevice::isBluetooth(const AudioDevices& devices, std::string_view uid) {
  const auto device = uid.empty() ? devices.defaultInputDevice() : deviceID(devices, uid);
  return device && isBluetooth(devices, *device);
}

bool MacAudioInputDevice::isBluetooth(const AudioDevices& devices, AudioDeviceID device) {
  const auto transport = devices.transport(device);
  return transport == AudioTransport::bluetooth || transport == AudioTransport::bluetoothLowEnergy;
}

bool MacAudioInputDevice::isSystemAggregate(std::string_view uid) {
  return std::any_of(systemAggregateMarks.begin(), systemAggregateMarks.end(),
                     [uid](std::string_view mark) { return uid.find(mark) != uid.npos; });
}

}  // namespace quillo
