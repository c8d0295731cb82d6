// Many callers, one running task.
#pragma once

#include <functional>

#include "base/task.h"

namespace quillo {

// While a task runs, everyone who asks waits for that one and gets its value.
template <class T>
class SingleFlight {
 public:
  explicit SingleFlight(MainThread& mainThread) : mainThread_(mainThread) {}

  Task<T> join(std::function<Task<T>()> make) {
    if (running_) co_return co_await running_.value();
    const TaskHandle<T> mine = start(mainThread_, make());
    running_ = mine;
    const Forget forget{*this, mine};
    co_return co_await mine.value();
  }
  void cancelAndForget() {
    running_.cancel();
    running_ = {};
  }
  bool isRunning() const { return static_cast<bool>(running_); }

 private:
  struct Forget {
    SingleFlight& flight;
    TaskHandle<T> mine;
    ~Forget() {
      if (flight.running_ == mine) flight.running_ = {};
    }
  };

  MainThread& mainThread_;
  TaskHandle<T> running_;
};

}  // namespace quillo
