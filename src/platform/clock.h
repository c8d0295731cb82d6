// Wall-clock time.
#pragma once

#include <cstdint>

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

}  // namespace quillo
