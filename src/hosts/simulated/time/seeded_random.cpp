#include "hosts/simulated/time/seeded_random.h"

#include <bit>

namespace quillo::simulated {
namespace {

std::uint64_t splitMix64(std::uint64_t& state) {
  state += 0x9e3779b97f4a7c15ULL;
  std::uint64_t z = state;
  z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9ULL;
  z = (z ^ z >> 27) * 0x94d049bb133111ebULL;
  return z ^ z >> 31;
}

// FNV-1a (Fowler, Noll, Vo), 64 bits.
std::uint64_t hashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325ULL;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3ULL;
  return hash;
}

}  // namespace

SeededRandom::SeededRandom(std::uint64_t seed) {
  for (std::uint64_t& word : state_) word = splitMix64(seed);
}

SeededRandom::SeededRandom(std::uint64_t seed, std::string_view stream)
    : SeededRandom(seed ^ hashOf(stream)) {}

std::uint64_t SeededRandom::next() {
  const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
  const std::uint64_t t = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= t;
  state_[3] = std::rotl(state_[3], 45);
  return result;
}

std::uint64_t SeededRandom::below(std::uint64_t bound) {
  // Values below this would make the low results more likely than the high ones.
  const std::uint64_t rejected = (0 - bound) % bound;
  for (;;) {
    const std::uint64_t value = next();
    if (value >= rejected) return value % bound;
  }
}

Duration SeededRandom::between(Duration shortest, Duration longest) {
  using std::chrono::microseconds;
  const auto steps = std::chrono::duration_cast<microseconds>(longest - shortest).count();
  return shortest + microseconds(below(static_cast<std::uint64_t>(steps) + 1));
}

bool SeededRandom::chance(double share) {
  // The upper 53 bits as a fraction of 1.
  return static_cast<double>(next() >> 11) * 0x1.0p-53 < share;
}

}  // namespace quillo::simulated
