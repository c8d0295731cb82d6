// The microphones that the user can choose from, and how the others are found.
#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/audio_devices.h"

namespace quillo {

// A microphone as the settings know it: by its UID, which stays the same between runs. Main
// thread. Whatever cannot be read of a device counts as absent.
struct MacAudioInputDevice {
  std::string id;  // UID
  std::string name;

  friend auto operator<=>(const MacAudioInputDevice&, const MacAudioInputDevice&) = default;

  // In the system's order, without those that no user has plugged in or made.
  static std::vector<MacAudioInputDevice> availableDevices(const AudioDevices& devices);

  // The connected device of this UID.
  static std::optional<AudioDeviceID> deviceID(const AudioDevices& devices, std::string_view uid);

  // Whether the device of this UID, or the default input for an empty one, is on Bluetooth.
  static bool isBluetooth(const AudioDevices& devices, std::string_view uid);
  static bool isBluetooth(const AudioDevices& devices, AudioDeviceID device);

  // Whether the UID is one of a device that the system makes for itself while it processes voice.
  static bool isSystemAggregate(std::string_view uid);
};

}  // namespace quillo

template <>
struct std::hash<quillo::MacAudioInputDevice> {
  std::size_t operator()(const quillo::MacAudioInputDevice& device) const noexcept {
    return std::hash<std::string>()(device.id) * 31 + std::hash<std::string>()(device.name);
  }
};
