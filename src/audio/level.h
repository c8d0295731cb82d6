// How loud a buffer is, on the scale that meters show.
#pragma once

#include <optional>

#include "platform/audio_buffer.h"

namespace quillo {

// Level of the first channel: 0 at -40 dBFS and below, 1 at -10 dBFS and above, linear in decibels
// between. Nothing for a buffer without samples. Any thread.
std::optional<float> computeLevel(const AudioBuffer& buffer);

}  // namespace quillo
