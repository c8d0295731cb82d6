#include "service/clock.h"

namespace quillo::service {

Clock systemClock() {
  return
      [] { return std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now()); };
}

}  // namespace quillo::service
