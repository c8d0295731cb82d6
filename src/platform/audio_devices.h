// The microphones and loudspeakers of the machine.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"

namespace quillo {

enum class AudioDeviceID : std::uint32_t {};

// Four-character codes of the transport of a device.
enum class AudioTransport : std::uint32_t {
  unknown = 0,
  builtIn = 0x626c746e,             // "bltn"
  usb = 0x75736220,                 // "usb "
  bluetooth = 0x626c7565,           // "blue"
  bluetoothLowEnergy = 0x626c6561,  // "blea"
  aggregate = 0x67727570,           // "grup"
  virtualDevice = 0x76697274,       // "virt"
};

enum class AudioDevicesFailure { noSoundSystem };

// Main thread. A property that a device does not tell is nothing, and so are all of one that has
// gone. A sound server that has not yet said what it has is waited for, a second at most and once;
// after that no call blocks.
class AudioDevices {
 public:
  virtual ~AudioDevices() = default;

  // In the system's order.
  virtual Result<std::vector<AudioDeviceID>, AudioDevicesFailure> devices() const = 0;
  virtual std::optional<AudioDeviceID> defaultInputDevice() const = 0;
  // Stable between runs, unlike the id.
  virtual std::optional<std::string> uid(AudioDeviceID device) const = 0;
  virtual std::optional<std::string> name(AudioDeviceID device) const = 0;
  virtual std::optional<bool> isHidden(AudioDeviceID device) const = 0;
  virtual std::optional<AudioTransport> transport(AudioDeviceID device) const = 0;
  // Channels of each input stream.
  virtual std::optional<std::vector<int>> inputStreamChannels(AudioDeviceID device) const = 0;
  // Calls `changed` on the main thread when a device comes or goes, until the result is dropped.
  [[nodiscard]] virtual std::shared_ptr<void> observeDevices(std::function<void()> changed) = 0;
};

}  // namespace quillo
