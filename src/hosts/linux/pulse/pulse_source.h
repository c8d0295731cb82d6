// What the sound server offers to record from.
#pragma once

#include <pulse/introspect.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"

namespace quillo::linux_host {

struct PulseSource {
  std::uint32_t index = 0;  // of this run of the server
  std::string name;         // stable between runs
  std::string description;
  AudioTransport transport = AudioTransport::unknown;
  // It carries what an output plays, and never a voice.
  bool isMonitor = false;
  AudioFormat format;

  static PulseSource from(const pa_source_info& info);
  friend bool operator==(const PulseSource&, const PulseSource&) = default;
};

struct PulseInputs {
  std::vector<PulseSource> sources;  // in the server's order
  std::string defaultName;

  // Nothing when it is not there.
  const PulseSource* find(std::uint32_t index) const;
  const PulseSource* find(const std::string& name) const;
  // A server without a microphone names a monitor as its default: that is none.
  const PulseSource* defaultMicrophone() const;
  friend bool operator==(const PulseInputs&, const PulseInputs&) = default;
};

}  // namespace quillo::linux_host
