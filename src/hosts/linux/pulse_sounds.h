// The cues, played by the sound server.
#pragma once

#include <pulse/stream.h>

#include <cstdint>
#include <map>
#include <vector>

#include "hosts/linux/pulse_connection.h"
#include "platform/application.h"

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

  PulseConnection& connection_;
  std::map<pa_stream*, std::vector<std::int16_t>> playing_;  // under the connection's lock
};

}  // namespace quillo::linux_host
