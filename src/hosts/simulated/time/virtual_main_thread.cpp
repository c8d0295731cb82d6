#include "hosts/simulated/time/virtual_main_thread.h"

#include <stdexcept>
#include <utility>

namespace quillo::simulated {
namespace {

// More turns than this without the time moving are a loop that never ends.
constexpr std::uint64_t mostTurnsInOneMoment = 1'000'000;

}  // namespace

void VirtualMainThread::post(std::function<void()> work) {
  turns_.push_back(std::move(work));
}

TimerId VirtualMainThread::callAfter(Duration delay, std::function<void()> work) {
  const TimerId timer{nextTimer_++};
  const auto makeTurn = [this, timer] {
    post([this, timer] {
      // Cancelled since it came due: then it is not there any more.
      if (auto due = timers_.extract(timer)) due.mapped().work();
    });
  };
  timers_.emplace(timer, PlannedTimer{timeline_.after(delay, makeTurn), std::move(work)});
  return timer;
}

void VirtualMainThread::cancelTimer(TimerId timer) {
  const auto cancelled = timers_.extract(timer);
  if (cancelled) timeline_.cancel(cancelled.mapped().plan);
}

void VirtualMainThread::reportLostError(std::exception_ptr error) {
  if (!lostError_) lostError_ = std::move(error);
}

void VirtualMainThread::throwLostError() {
  if (lostError_) std::rethrow_exception(std::exchange(lostError_, nullptr));
}

void VirtualMainThread::runOneTurn() {
  if (std::exchange(momentOfTurns_, now()) != now()) turnsInMoment_ = 0;
  if (++turnsInMoment_ > mostTurnsInOneMoment)
    throw std::runtime_error("The main thread runs turn after turn while no time passes.");
  const auto turn = std::move(turns_.front());
  turns_.pop_front();
  turn();
}

bool VirtualMainThread::step(MonotonicTime limit) {
  timeline_.runDue();
  if (!turns_.empty()) {
    runOneTurn();
    return true;
  }
  const auto next = timeline_.nextTime();
  if (!next || *next > limit) return false;
  timeline_.passUntil(*next);
  return true;
}

void VirtualMainThread::runModallyFor(Duration duration) {
  const MonotonicTime end = now() + duration;
  while (step(end)) {
  }
  timeline_.passUntil(end);
}

void VirtualMainThread::runFor(Duration duration) {
  runModallyFor(duration);
  throwLostError();
}

void VirtualMainThread::runUntilIdle() {
  const MonotonicTime end = now() + longestWay;
  while (step(end)) {
  }
  throwLostError();
  if (!isIdle()) throw std::runtime_error("The desktop did not come to rest within two hours.");
}

bool VirtualMainThread::runUntil(const std::function<bool()>& condition, Duration limit) {
  const MonotonicTime end = now() + limit;
  while (!condition() && step(end)) {
  }
  throwLostError();
  if (condition()) return true;
  timeline_.passUntil(end);
  return condition();
}

}  // namespace quillo::simulated
