#include "base/task.h"

namespace quillo {

std::atomic<std::int64_t> detail::liveFrames{0};

std::int64_t liveFrameCount() {
  return detail::liveFrames.load(std::memory_order_relaxed);
}

Task<SleepEnd> sleepFor(Duration duration) {
  const TaskContext context = co_await currentTask();
  if (context.stopToken.stop_requested()) co_return SleepEnd::cancelled;
  Completion<SleepEnd> ended(*context.mainThread);
  Timer timer(*context.mainThread, duration, [ended] { ended.deliver(SleepEnd::elapsed); });
  std::stop_callback wake(context.stopToken, [ended] { ended.deliver(SleepEnd::cancelled); });
  co_return co_await ended;
}

Task<> sleepInFull(Duration duration) {
  const TaskContext context = co_await currentTask();
  Completion<> elapsed(*context.mainThread);
  const Timer timer(*context.mainThread, duration, [elapsed] { elapsed.deliver(); });
  co_await elapsed;
}

Task<> yieldTurn() {
  const TaskContext context = co_await currentTask();
  Completion<> turn(*context.mainThread);
  turn.deliver();
  co_await turn;
}

Task<bool> isCancelled() {
  const TaskContext context = co_await currentTask();
  co_return context.stopToken.stop_requested();
}

Task<> checkCancellation() {
  if (co_await isCancelled()) throw CancellationError();
}

}  // namespace quillo
