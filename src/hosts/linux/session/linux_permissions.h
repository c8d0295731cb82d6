// What this desktop allows the program.
#pragma once

#include <functional>

#include "base/main_thread.h"
#include "platform/audio_devices.h"
#include "platform/permissions.h"

namespace quillo::linux_host {

// Desktops here ask no user: they offer a thing or they do not. The microphone is denied where a
// sandbox hides every one of them; keys are a matter of the display.
class LinuxPermissions final : public Permissions {
 public:
  struct Display {
    std::function<bool()> canPostKeys;  // into other programs
    std::function<bool()> canSeeKeys;   // that go to other programs
  };
  LinuxPermissions(const AudioDevices& devices, Display display);

  bool isMicrophoneAuthorised() const override;
  Task<bool> requestMicrophone() override;
  bool isAccessibilityTrusted() const override { return display_.canPostKeys(); }
  bool hasListenEventAccess() const override { return display_.canSeeKeys(); }
  void requestListenEventAccess() override {}

 private:
  const AudioDevices& devices_;
  const Display display_;
};

}  // namespace quillo::linux_host
