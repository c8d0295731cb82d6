// The wall clock, which follows virtual time.
#pragma once

#include "hosts/simulated/time/timeline.h"
#include "platform/clock.h"

namespace quillo::simulated {

// The user's time zone is UTC.
class VirtualClock final : public Clock {
 public:
  explicit VirtualClock(const Timeline& timeline);

  Date now() const override { return start_ + timeline_.now().sinceStart; }
  Date daysBefore(Date date, std::int64_t days) const override;

  // --- Driver ---

  // The user or the network sets the clock; it runs on from there.
  void set(Date date) { start_ = date - timeline_.now().sinceStart; }

 private:
  const Timeline& timeline_;
  Date start_;
};

}  // namespace quillo::simulated
