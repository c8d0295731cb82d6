// Long recordings are recognised piece by piece: a recogniser's memory grows with what it hears
// at once.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace quillo::service {

// The samples (16 kHz) cut at their quietest moments into pieces of 15 to 30 seconds; whole when
// they are shorter.
std::vector<std::span<const std::int16_t>> utterances(std::span<const std::int16_t> samples);

}  // namespace quillo::service
