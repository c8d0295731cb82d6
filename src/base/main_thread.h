// The main thread: where nearly everything runs, one turn of work after another.
#pragma once

#include <coroutine>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <unordered_map>

#include "base/time.h"

namespace quillo {

enum class TimerId : std::uint64_t { none = 0 };

// Hosts implement the queue and the timers; the live tasks are kept here.
// Main thread only, but for post() and now(), which any thread may call.
class MainThread {
 public:
  MainThread() = default;
  MainThread(const MainThread&) = delete;
  MainThread& operator=(const MainThread&) = delete;
  virtual ~MainThread() = default;

  // Runs `work` in a later turn, in the order of posting.
  virtual void post(std::function<void()> work) = 0;
  // Runs `work` once, no earlier than `delay` from now.
  virtual TimerId callAfter(Duration delay, std::function<void()> work) = 0;
  // A timer that fired or never was is ignored.
  virtual void cancelTimer(TimerId timer) = 0;
  virtual MonotonicTime now() const = 0;
  // A started task ended with an error that nobody can await any more.
  virtual void reportLostError(std::exception_ptr error) = 0;

  // Destroys every task that has not ended, as the program ends. The frames refer to the rooms,
  // so the composition root calls this before it takes the rooms down.
  void abandonTasks();
  std::size_t liveTaskCount() const { return tasks_.size(); }

  // For the task machinery: the root frames that have not ended.
  std::uint64_t adopt(std::coroutine_handle<> frame);
  void release(std::uint64_t task) { tasks_.erase(task); }
  std::coroutine_handle<> frameOf(std::uint64_t task) const;

 private:
  std::unordered_map<std::uint64_t, std::coroutine_handle<>> tasks_;
  std::uint64_t nextTask_ = 1;
};

// A one-shot timer that its owner can forget: destruction and reassignment invalidate it.
class Timer {
 public:
  Timer() = default;
  Timer(MainThread& mainThread, Duration delay, std::function<void()> work);
  Timer(Timer&& other) noexcept;
  Timer& operator=(Timer&& other) noexcept;
  ~Timer() { invalidate(); }

  void invalidate();
  bool isPending() const { return state_ && *state_; }

 private:
  MainThread* mainThread_ = nullptr;
  TimerId id_ = TimerId::none;
  std::shared_ptr<bool> state_;  // true until it fires
};

}  // namespace quillo
