#include "hosts/simulated/key_route.h"

namespace quillo::simulated {

bool KeyRoute::carry(std::function<void()> deliver) {
  if (random_.chance(loss_)) return false;
  if (random_.chance(duplication_)) deliverAfter(latency_ + duplicationGap_, deliver);
  deliverAfter(latency_, std::move(deliver));
  return true;
}

void KeyRoute::deliverAfter(Duration delay, std::function<void()> deliver) {
  if (delay <= Duration::zero()) return mainThread_.post(std::move(deliver));
  timeline_.after(delay, [this, deliver = std::move(deliver)] { mainThread_.post(deliver); });
}

void KeyRoute::setDuplication(double share, Duration gap) {
  duplication_ = share;
  duplicationGap_ = gap;
}

}  // namespace quillo::simulated
