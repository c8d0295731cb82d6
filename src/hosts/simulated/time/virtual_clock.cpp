#include "hosts/simulated/time/virtual_clock.h"

namespace quillo::simulated {

VirtualClock::VirtualClock(const Timeline& timeline)
    : timeline_(timeline),
      start_(std::chrono::sys_days(std::chrono::year(2026) / 3 / 4) + std::chrono::hours(9)) {}

Date VirtualClock::daysBefore(Date date, std::int64_t days) const {
  return date - std::chrono::days(days);
}

}  // namespace quillo::simulated
