#include "hosts/simulated/keyboard/key_route.h"

#include <algorithm>

namespace quillo::simulated {

bool KeyRoute::carry(std::function<void()> deliver) {
  if (random_.chance(loss_)) {
    ++counts_.lost;
    return false;
  }
  ++counts_.carried;
  const bool isDoubled = random_.chance(duplication_);
  deliverAfter(latency_, deliver);
  if (!isDoubled) return true;
  ++counts_.doubled;
  deliverAfter(latency_ + duplicationGap_, std::move(deliver));
  return true;
}

void KeyRoute::deliverAfter(Duration delay, std::function<void()> deliver) {
  const MonotonicTime now = timeline_.now();
  if (delay <= Duration::zero() && underWay_ == 0) return mainThread_.post(std::move(deliver));
  lastArrival_ = std::max(lastArrival_, now + delay);
  ++underWay_;
  timeline_.after(lastArrival_ - now, [this, deliver = std::move(deliver)] {
    --underWay_;
    mainThread_.post(deliver);
  });
}

void KeyRoute::setDuplication(double share, Duration gap) {
  duplication_ = share;
  duplicationGap_ = gap;
}

}  // namespace quillo::simulated
