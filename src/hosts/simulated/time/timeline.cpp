#include "hosts/simulated/time/timeline.h"

#include <algorithm>

namespace quillo::simulated {

Timeline::Plan Timeline::after(Duration delay, std::function<void()> happen) {
  const Plan plan{now_ + std::max(delay, Duration::zero()), nextSequence_++};
  planned_.emplace(plan, std::move(happen));
  return plan;
}

std::optional<MonotonicTime> Timeline::nextTime() const {
  if (planned_.empty()) return std::nullopt;
  return planned_.begin()->first.time;
}

void Timeline::runDue() {
  passUntil(now_);
}

void Timeline::passUntil(MonotonicTime time) {
  while (!planned_.empty() && planned_.begin()->first.time <= time) {
    auto first = planned_.extract(planned_.begin());
    now_ = std::max(now_, first.key().time);
    first.mapped()();
  }
  now_ = std::max(now_, time);
}

}  // namespace quillo::simulated
