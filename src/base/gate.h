// One holder at a time, first come, first served.
#pragma once

#include <deque>

#include "base/task.h"

namespace quillo {

// Main thread only. There is no time-out, and waiting is not ended by cancellation: a holder
// always gets its turn, and calls leave() exactly once.
class Gate {
 public:
  Task<> enter();
  void leave();
  bool isBusy() const { return busy_; }

 private:
  bool busy_ = false;
  std::deque<Completion<>> waiters_;
};

}  // namespace quillo
