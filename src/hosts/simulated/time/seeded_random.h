// Chance from one seed.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/time.h"
#include "platform/random.h"

namespace quillo::simulated {

// xoshiro256** 1.0 (Blackman and Vigna, "Scrambled linear pseudorandom number generators", 2021),
// its state filled by SplitMix64 (Steele, Lea and Flood, OOPSLA 2014). The same seed gives the
// same numbers on every machine.
class SeededRandom final : public Random {
 public:
  explicit SeededRandom(std::uint64_t seed);
  // A stream of its own for each user, so that one user's draws do not move another's.
  SeededRandom(std::uint64_t seed, std::string_view stream);

  std::uint64_t next() override;

  // --- Driver: distributions ---

  // Uniform in 0...bound-1; bound is at least 1.
  std::uint64_t below(std::uint64_t bound);
  // Uniform, both ends included, in whole microseconds.
  Duration between(Duration shortest, Duration longest);
  // True in `share` (0...1) of the calls.
  bool chance(double share);

 private:
  std::array<std::uint64_t, 4> state_{};
};

}  // namespace quillo::simulated
