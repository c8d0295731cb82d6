#include "hosts/linux/session/linux_permissions.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace quillo::linux_host {
namespace {

// Flatpak and Snap.
bool isSandboxed() {
  std::error_code error;
  return std::filesystem::exists("/.flatpak-info", error) || std::getenv("SNAP");
}

bool isMicrophone(const AudioDevices& devices, AudioDeviceID device) {
  return devices.isHidden(device) == false;
}

}  // namespace

LinuxPermissions::LinuxPermissions(const AudioDevices& devices, Display display)
    : devices_(devices), display_(std::move(display)) {}

// Outside a sandbox nothing forbids a microphone, so having none is not a denial.
bool LinuxPermissions::isMicrophoneAuthorised() const {
  if (!isSandboxed()) return true;
  const auto devices = devices_.devices();
  return !devices || std::ranges::any_of(*devices, [this](AudioDeviceID device) {
    return isMicrophone(devices_, device);
  });
}

Task<bool> LinuxPermissions::requestMicrophone() {
  co_return isMicrophoneAuthorised();
}

}  // namespace quillo::linux_host
