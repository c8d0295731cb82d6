// Chance.
#pragma once

#include <cstdint>
#include <string>

#include "base/identifiers.h"

namespace quillo {

class Random {
 public:
  virtual ~Random() = default;
  // Uniform over all 64-bit values, unpredictable. Any thread.
  virtual std::uint64_t next() = 0;

  std::string newUuid() {
    const std::uint64_t high = next();
    return uuidText(high, next());
  }
};

}  // namespace quillo
