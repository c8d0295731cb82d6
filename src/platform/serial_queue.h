// Work off the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "base/task.h"

namespace quillo {

// Runs what is posted one after another, in order, on a thread of its own. Its destructor finishes
// what was posted.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  // Any thread; returns at once.
  virtual void post(std::function<void()> work) = 0;
};

class SerialQueues {
 public:
  virtual ~SerialQueues() = default;
  virtual std::unique_ptr<SerialQueue> make(std::string_view label) = 0;
};

// Runs `work` on `queue` and gives its result to the awaiting task. A cancelled task still waits:
// the work cannot be called back. `work` throws nothing.
template <class T>
Task<T> runOn(SerialQueue& queue, std::function<T()> work) {
  const TaskContext context = co_await currentTask();
  Completion<T> done(*context.mainThread);
  queue.post([done, work = std::move(work)] { done.deliverFromAnyThread(work()); });
  co_return co_await done;
}

}  // namespace quillo
