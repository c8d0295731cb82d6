#include "hosts/simulated/sound/microphone.h"

#include <numeric>

namespace quillo::simulated {

bool Microphone::hasInput() const {
  return format().channels > 0;
}

AudioFormat Microphone::format() const {
  const auto& streams = description_.inputStreamChannels;
  const int channels = streams ? std::accumulate(streams->begin(), streams->end(), 0) : 0;
  return {description_.sampleRate, channels};
}

void Microphone::refuseStart(std::optional<std::string> error, int times) {
  startError_ = std::move(error);
  refusalsLeft_ = times;
}

std::optional<std::string> Microphone::tryStart() {
  if (!startError_ || refusalsLeft_ == 0) return std::nullopt;
  --refusalsLeft_;
  return startError_;
}

}  // namespace quillo::simulated
