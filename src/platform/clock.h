// Wall-clock time and chance.
#pragma once

#include <cstdint>
#include <string>

#include "base/identifiers.h"
#include "base/time.h"

namespace quillo {

class Clock {
 public:
  virtual ~Clock() = default;
  // Any thread. May jump when the user or the network sets the clock.
  virtual Date now() const = 0;
  // `days` back in the calendar of the user's time zone, at the same time of day.
  virtual Date daysBefore(Date date, std::int64_t days) const = 0;
};

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
