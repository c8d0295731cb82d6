// Many callers, one running task.
#pragma once

#include <cstdint>
#include <functional>

#include "base/task.h"

namespace quillo {

// While a task runs, everyone who asks waits for that one and gets its value.
template <class T>
class SingleFlight {
 public:
  explicit SingleFlight(MainThread& mainThread) : mainThread_(mainThread) {}

  // Throws CancellationError as soon as the caller is cancelled; the task goes on for the others.
  Task<T> join(std::function<Task<T>()> make) {
    if (!running_) running_ = start(mainThread_, fly(make(), ++number_));
    co_return co_await running_.valueUnlessCancelled();
  }
  void cancelAndForget() {
    running_.cancel();
    running_ = {};
  }
  bool isRunning() const { return static_cast<bool>(running_); }

 private:
  // A task that was cancelled may end after its successor has begun.
  struct Forget {
    SingleFlight& flight;
    std::uint64_t number;
    ~Forget() {
      if (flight.number_ == number) flight.running_ = {};
    }
  };

  Task<T> fly(Task<T> task, std::uint64_t number) {
    const Forget forget{*this, number};
    co_return co_await std::move(task);
  }

  MainThread& mainThread_;
  std::uint64_t number_ = 0;  // of the last task that was begun
  TaskHandle<T> running_;
};

}  // namespace quillo
