// Recordings to samples, on the FFmpeg libraries.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace quillo::service {

// 16 kHz, one channel.
struct Audio {
  static constexpr int sampleRate = 16'000;
  std::vector<std::int16_t> samples;

  double seconds() const { return static_cast<double>(samples.size()) / sampleRate; }
};

class UndecodableAudio final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The sound of an MPEG-4 file, plain or fragmented, of a WAVE file or of ADTS, wholly in memory.
// Stops once it has more than `maximumSeconds`. Throws UndecodableAudio. Any thread.
Audio decodeAudio(std::string_view file, double maximumSeconds);

}  // namespace quillo::service
