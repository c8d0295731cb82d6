// The machine's monotonic clock.
#pragma once

#include "base/time.h"

namespace quillo::linux_host {

// Any thread.
inline MonotonicTime monotonicNow() {
  return {std::chrono::steady_clock::now().time_since_epoch()};
}

}  // namespace quillo::linux_host
