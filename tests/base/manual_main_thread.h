// A main thread that a test turns by hand, with a clock that stands still until it is moved.
#pragma once

#include <deque>
#include <map>

#include "base/task.h"

namespace quillo {

class ManualMainThread final : public MainThread {
 public:
  ~ManualMainThread() override { abandonTasks(); }

  void post(std::function<void()> work) override { queue_.push_back(std::move(work)); }
  TimerId callAfter(Duration delay, std::function<void()> work) override {
    const auto id = static_cast<TimerId>(++lastTimer_);
    timers_.emplace(std::pair(now_ + delay, lastTimer_), std::pair(id, std::move(work)));
    return id;
  }
  void cancelTimer(TimerId timer) override {
    std::erase_if(timers_, [timer](const auto& entry) { return entry.second.first == timer; });
  }
  MonotonicTime now() const override { return now_; }
  void reportLostError(std::exception_ptr error) override { lostErrors.push_back(error); }

  // Turns until nothing is queued.
  void drain() {
    while (!queue_.empty()) {
      auto work = std::move(queue_.front());
      queue_.pop_front();
      work();
    }
  }
  // Lets `duration` pass, firing what falls due on the way.
  void pass(Duration duration) {
    const MonotonicTime end = now_ + duration;
    drain();
    while (!timers_.empty() && timers_.begin()->first.first <= end) {
      now_ = timers_.begin()->first.first;
      auto work = std::move(timers_.begin()->second.second);
      timers_.erase(timers_.begin());
      work();
      drain();
    }
    now_ = end;
  }
  std::size_t timerCount() const { return timers_.size(); }

  std::vector<std::exception_ptr> lostErrors;

 private:
  std::deque<std::function<void()>> queue_;
  std::map<std::pair<MonotonicTime, std::uint64_t>, std::pair<TimerId, std::function<void()>>>
      timers_;
  std::uint64_t lastTimer_ = 0;
  MonotonicTime now_;
};

}  // namespace quillo
