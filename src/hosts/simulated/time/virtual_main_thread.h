// The program's main thread in virtual time.
#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <unordered_map>

#include "base/main_thread.h"
#include "hosts/simulated/time/timeline.h"

namespace quillo::simulated {

// One turn after another, in the order of posting. When no turn is left, time jumps to the next
// timer or happening. Everything runs on the thread that calls a run... verb.
class VirtualMainThread final : public MainThread {
 public:
  explicit VirtualMainThread(Timeline& timeline) : timeline_(timeline) {}

  void post(std::function<void()> work) override;
  TimerId callAfter(Duration delay, std::function<void()> work) override;
  void cancelTimer(TimerId timer) override;
  MonotonicTime now() const override { return timeline_.now(); }
  // Kept, and thrown by the run... verb that is under way.
  void reportLostError(std::exception_ptr error) override;

  // --- Driver ---

  // The longest that the verbs without a limit of their own run.
  static constexpr Duration longestWay = std::chrono::hours(2);

  void runFor(Duration duration);
  // Until nothing is planned any more. Throws when that is not so after `longestWay`.
  void runUntilIdle();
  // Until `condition` holds, at most for `limit`; whether it holds.
  bool runUntil(const std::function<bool()>& condition, Duration limit);
  // A modal loop inside a running turn: further turns go on meanwhile.
  void runModallyFor(Duration duration);
  // Whether no turn, timer or happening is planned.
  bool isIdle() const { return turns_.empty() && !timeline_.nextTime(); }
  // Throws the error of a started task that nobody awaited, if there was one.
  void throwLostError();

 private:
  // One turn, or one jump to the next planned moment, but not beyond `limit`. False when there is
  // nothing to do until then.
  bool step(MonotonicTime limit);
  void runOneTurn();

  Timeline& timeline_;
  std::deque<std::function<void()>> turns_;
  struct PlannedTimer {
    Timeline::Plan plan;
    std::function<void()> work;
  };
  std::unordered_map<TimerId, PlannedTimer> timers_;
  std::uint64_t nextTimer_ = 1;
  std::exception_ptr lostError_;
  MonotonicTime momentOfTurns_;
  std::uint64_t turnsInMoment_ = 0;
};

}  // namespace quillo::simulated
