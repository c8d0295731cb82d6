#include "base/main_thread.h"

#include <utility>

namespace quillo {

void MainThread::abandonTasks() {
  while (!tasks_.empty()) {
    // Destroying a frame runs its destructors, which may touch the table: take it out first.
    auto first = tasks_.begin();
    const std::coroutine_handle<> frame = first->second;
    tasks_.erase(first);
    frame.destroy();
  }
}

std::uint64_t MainThread::adopt(std::coroutine_handle<> frame) {
  const std::uint64_t task = nextTask_++;
  tasks_.emplace(task, frame);
  return task;
}

std::coroutine_handle<> MainThread::frameOf(std::uint64_t task) const {
  const auto found = tasks_.find(task);
  return found == tasks_.end() ? nullptr : found->second;
}

Timer::Timer(MainThread& mainThread, Duration delay, std::function<void()> work)
    : mainThread_(&mainThread), state_(std::make_shared<bool>(true)) {
  id_ = mainThread.callAfter(delay, [pending = state_, work = std::move(work)] {
    *pending = false;
    work();
  });
}

Timer::Timer(Timer&& other) noexcept
    : mainThread_(other.mainThread_),
      id_(std::exchange(other.id_, TimerId::none)),
      state_(std::move(other.state_)) {}

Timer& Timer::operator=(Timer&& other) noexcept {
  if (this != &other) {
    invalidate();
    mainThread_ = other.mainThread_;
    id_ = std::exchange(other.id_, TimerId::none);
    state_ = std::move(other.state_);
  }
  return *this;
}

void Timer::invalidate() {
  if (id_ != TimerId::none && isPending()) mainThread_->cancelTimer(id_);
  id_ = TimerId::none;
  state_.reset();
}

}  // namespace quillo
