// Takes several reports of one press for one.
#pragma once

#include "base/main_thread.h"
#include "base/time.h"

namespace quillo {

// Main thread.
class Debounce {
 public:
  Debounce(const MainThread& mainThread, Duration interval)
      : mainThread_(mainThread), interval_(interval) {}

  // False less than the interval after the last admission.
  bool admits() {
    const MonotonicTime now = mainThread_.now();
    if (now - lastAdmission_ < interval_) return false;
    lastAdmission_ = now;
    return true;
  }

 private:
  const MainThread& mainThread_;
  Duration interval_;
  MonotonicTime lastAdmission_ = MonotonicTime::distantPast();
};

}  // namespace quillo
