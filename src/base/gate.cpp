#include "base/gate.h"

namespace quillo {

Task<> Gate::enter() {
  if (!busy_) {
    busy_ = true;
    co_return;
  }
  const TaskContext context = co_await currentTask();
  Completion<> turn(*context.mainThread);
  waiters_.push_back(turn);
  co_await turn;
}

void Gate::leave() {
  if (waiters_.empty()) {
    busy_ = false;
    return;
  }
  // The gate passes directly to the longest waiter: busy stays set, so no newcomer slips in.
  const Completion<> next = waiters_.front();
  waiters_.pop_front();
  next.deliver();
}

}  // namespace quillo
