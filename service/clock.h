// The wall clock, handed in so that days, months and expiries can be lived through in a test.
#pragma once

#include <functional>

#include "base/time.h"

namespace quillo::service {

// Any thread.
using Clock = std::function<Date()>;

Clock systemClock();

// Whole seconds since 1970, the form in which the database keeps times.
inline std::int64_t epochSeconds(Date date) {
  return std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
}
inline Date dateFromEpochSeconds(std::int64_t seconds) {
  return Date(std::chrono::seconds(seconds));
}

}  // namespace quillo::service
