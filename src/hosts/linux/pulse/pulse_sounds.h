// The cues, played by the sound server.
#pragma once

#include <pulse/stream.h>

#include <cstdint>
#include <map>
#include <vector>

#include "hosts/linux/pulse/pulse_connection.h"
#include "platform/sounds.h"

namespace quillo::linux_host {

// Waits for nothing; silent without a server.
class PulseSounds final : public Sounds {
 public:
  explicit PulseSounds(PulseConnection& connection) : connection_(connection) {}
  ~PulseSounds() override;

  void play(std::string_view name) override;

 private:
  void end(pa_stream* stream);

  static void onState(pa_stream* stream, void* self);
  static void onDrained(pa_stream* stream, int success, void* self);

  struct Cue {
    std::vector<std::int16_t> samples;
    pa_operation* drain = nullptr;  // calls back even after its stream was told to end
  };

  PulseConnection& connection_;
  std::map<pa_stream*, Cue> playing_;  // under the connection's lock
};

}  // namespace quillo::linux_host
