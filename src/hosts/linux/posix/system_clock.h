// Wall-clock time of the machine, and the calendar of its time zone.
#pragma once

#include "platform/clock.h"

namespace quillo::linux_host {

class SystemClock final : public Clock {
 public:
  Date now() const override;
  Date daysBefore(Date date, std::int64_t days) const override;
};

}  // namespace quillo::linux_host
