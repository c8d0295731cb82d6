// Tasks: C++20 coroutines on the main thread. The rules for writing them are in docs/coroutines.md.
//
//   Task<int> count(std::string text);                    // lazy: runs when awaited or started
//   int n = co_await count("abc");                        // runs in the caller's turn
//   TaskHandle<int> h = start(mainThread, count("abc"));  // runs in a later turn
//   h.cancel();                                  // asks; the task looks for it where it chooses
//   int m = co_await h.value();                  // waits for a started task; rethrows its error
//
// A task inherits the main thread and the cancellation of the one that awaits it. All of this is
// used on the main thread only.
#pragma once

#include <atomic>
#include <cassert>
#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <variant>
#include <vector>

#include "base/error.h"
#include "base/main_thread.h"
#include "base/time.h"

namespace quillo {

template <class T>
class Task;
template <class T>
class TaskHandle;

// Coroutine frames that exist now, in the whole process. A diagnostic: a test ends with as many as
// it began with.
std::int64_t liveFrameCount();

// What a started task and everything that it awaits have in common.
struct TaskContext {
  MainThread* mainThread = nullptr;
  std::stop_token stopToken;
};

namespace detail {

extern std::atomic<std::int64_t> liveFrames;

// `void` as a value.
template <class T>
using Stored = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

class PromiseBase {
 public:
  PromiseBase() { liveFrames.fetch_add(1, std::memory_order_relaxed); }
  PromiseBase(const PromiseBase&) = delete;
  PromiseBase& operator=(const PromiseBase&) = delete;
  ~PromiseBase() { liveFrames.fetch_sub(1, std::memory_order_relaxed); }

  std::suspend_always initial_suspend() noexcept { return {}; }

  struct ResumeContinuation {
    bool await_ready() noexcept { return false; }
    template <class Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) noexcept {
      return ended.promise().continuation;
    }
    void await_resume() noexcept {}
  };
  ResumeContinuation final_suspend() noexcept { return {}; }

  const TaskContext* context = nullptr;
  std::coroutine_handle<> continuation = std::noop_coroutine();
};

template <class T>
class Promise : public PromiseBase {
 public:
  Task<T> get_return_object();
  void unhandled_exception() { outcome_ = std::current_exception(); }
  template <class U>
    requires std::convertible_to<U, T>
  void return_value(U&& value) {
    outcome_.template emplace<1>(std::forward<U>(value));
  }
  T take() {
    if (auto* error = std::get_if<2>(&outcome_)) std::rethrow_exception(*error);
    return std::move(std::get<1>(outcome_));
  }

 private:
  std::variant<std::monostate, T, std::exception_ptr> outcome_;
};

template <>
class Promise<void> : public PromiseBase {
 public:
  Task<void> get_return_object();
  void unhandled_exception() { error_ = std::current_exception(); }
  void return_void() {}
  void take() {
    if (error_) std::rethrow_exception(error_);
  }

 private:
  std::exception_ptr error_;
};

}  // namespace detail

// A computation that begins when it is awaited or started. Owns its frame; move-only.
template <class T = void>
class [[nodiscard]] Task {
 public:
  using promise_type = detail::Promise<T>;

  explicit Task(std::coroutine_handle<promise_type> frame) : frame_(frame) {}
  Task(Task&& other) noexcept : frame_(std::exchange(other.frame_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    if (this != &other) {
      if (frame_) frame_.destroy();
      frame_ = std::exchange(other.frame_, nullptr);
    }
    return *this;
  }
  ~Task() {
    if (frame_) frame_.destroy();
  }

  bool await_ready() const noexcept { return false; }
  template <class CallerPromise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<CallerPromise> caller) noexcept {
    frame_.promise().context = caller.promise().context;
    frame_.promise().continuation = caller;
    return frame_;
  }
  T await_resume() { return frame_.promise().take(); }

 private:
  std::coroutine_handle<promise_type> frame_;
};

template <class T>
Task<T> detail::Promise<T>::get_return_object() {
  return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}
inline Task<void> detail::Promise<void>::get_return_object() {
  return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

// `co_await currentTask()`: the main thread and the cancellation of the running task.
struct currentTask {
  bool await_ready() const noexcept { return false; }
  template <class P>
  bool await_suspend(std::coroutine_handle<P> caller) noexcept {
    context_ = caller.promise().context;
    return false;
  }
  TaskContext await_resume() const { return *context_; }

 private:
  const TaskContext* context_ = nullptr;
};

// A value that a task waits for and that somebody else delivers, once. Copies share the value.
// Delivery wakes the waiter in a later turn. One waiter at a time.
template <class T = void>
class Completion {
  struct State {
    explicit State(MainThread& thread) : mainThread(thread) {}
    MainThread& mainThread;
    std::optional<detail::Stored<T>> value;
    std::coroutine_handle<> waiter;
  };

 public:
  explicit Completion(MainThread& mainThread) : state_(std::make_shared<State>(mainThread)) {}

  // Main thread. Only the first delivery counts.
  void deliver(detail::Stored<T> value = {}) const {
    if (state_->value) return;
    state_->value.emplace(std::move(value));
    if (state_->waiter) wakeLater();
  }
  // Any thread.
  void deliverFromAnyThread(detail::Stored<T> value = {}) const {
    state_->mainThread.post([completion = *this, value = std::move(value)]() mutable {
      completion.deliver(std::move(value));
    });
  }
  bool isDelivered() const { return state_->value.has_value(); }

  class Awaiter {
   public:
    explicit Awaiter(std::shared_ptr<State> state) : state_(std::move(state)) {}
    Awaiter(const Awaiter&) = delete;
    Awaiter& operator=(const Awaiter&) = delete;
    ~Awaiter() { state_->waiter = nullptr; }  // the waiting frame may go before the delivery

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter) {
      assert(!state_->waiter);
      state_->waiter = waiter;
      if (state_->value) Completion(state_).wakeLater();
    }
    T await_resume() {
      if constexpr (!std::is_void_v<T>) return std::move(*state_->value);
    }

   private:
    std::shared_ptr<State> state_;
  };
  Awaiter operator co_await() const { return Awaiter(state_); }

 private:
  explicit Completion(std::shared_ptr<State> state) : state_(std::move(state)) {}

  void wakeLater() const {
    state_->mainThread.post([state = state_] {
      if (auto waiter = std::exchange(state->waiter, nullptr)) waiter.resume();
    });
  }

  std::shared_ptr<State> state_;
};

Task<bool> isCancelled();
// Throws CancellationError when the running task was cancelled.
Task<> checkCancellation();

// Awaits `completion`, and calls `onCancel` (once, on the main thread) when the task is cancelled
// meanwhile; whoever delivers decides what a cancelled wait yields.
template <class T>
Task<T> awaitOrCancel(Completion<T> completion, std::function<void()> onCancel) {
  const TaskContext context = co_await currentTask();
  std::stop_callback callOnCancel(context.stopToken, std::move(onCancel));
  co_return co_await completion;
}

namespace detail {

template <class T>
struct TaskState {
  TaskContext context;
  std::stop_source stopSource;
  std::uint64_t id = 0;
  std::optional<Stored<T>> value;
  std::exception_ptr error;
  bool finished = false;
  std::vector<Completion<>> waiters;
};

// The frame at the root of a started task. It destroys itself when it ends.
struct Root {
  class promise_type : public PromiseBase {
   public:
    Root get_return_object() { return {std::coroutine_handle<promise_type>::from_promise(*this)}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    [[noreturn]] void unhandled_exception() { std::terminate(); }
  };
  std::coroutine_handle<promise_type> frame;
};

template <class T>
Root runRoot(std::shared_ptr<TaskState<T>> state, Task<T> task) {
  try {
    if constexpr (std::is_void_v<T>) {
      co_await std::move(task);
      state->value.emplace();
    } else {
      state->value.emplace(co_await std::move(task));
    }
  } catch (...) {
    state->error = std::current_exception();
  }
  state->finished = true;
  MainThread& mainThread = *state->context.mainThread;
  mainThread.release(state->id);
  if (state->error && state.use_count() == 1) mainThread.reportLostError(state->error);
  for (const Completion<>& waiter : state->waiters) waiter.deliver();
}

}  // namespace detail

// A started task: to cancel it, to ask whether it ended, to await its value. Copies mean the same
// task. Dropping the handle lets the task run on.
template <class T = void>
class TaskHandle {
 public:
  TaskHandle() = default;

  explicit operator bool() const { return state_ != nullptr; }
  bool isFinished() const { return state_ && state_->finished; }
  void cancel() const {
    // A copy: the request may run code that drops this handle.
    if (auto state = state_) state->stopSource.request_stop();
  }
  friend bool operator==(const TaskHandle& a, const TaskHandle& b) { return a.state_ == b.state_; }

  // Waits for the end. The waiter's own cancellation does not end the wait or the task.
  Task<T> value() const { return awaitEnd(state_); }
  // The same, but throws CancellationError as soon as the waiter is cancelled. The task goes on.
  Task<T> valueUnlessCancelled() const { return awaitEndUnlessCancelled(state_); }

 private:
  using State = detail::TaskState<T>;
  explicit TaskHandle(std::shared_ptr<State> state) : state_(std::move(state)) {}

  static Task<T> awaitEnd(std::shared_ptr<State> state) {
    if (!state->finished) {
      Completion<> ended(*state->context.mainThread);
      state->waiters.push_back(ended);
      co_await ended;
    }
    if (state->error) std::rethrow_exception(state->error);
    if constexpr (!std::is_void_v<T>) co_return *state->value;
  }

  static Task<T> awaitEndUnlessCancelled(std::shared_ptr<State> state) {
    if (!state->finished) {
      const Completion<> woken(*state->context.mainThread);
      state->waiters.push_back(woken);
      co_await awaitOrCancel<void>(woken, [woken] { woken.deliver(); });
    }
    co_await checkCancellation();
    co_return co_await awaitEnd(std::move(state));
  }

  template <class U>
  friend TaskHandle<U> start(MainThread& mainThread, Task<U> task);

  std::shared_ptr<State> state_;
};

// Starts `task` in a later turn of the main thread.
template <class T>
TaskHandle<T> start(MainThread& mainThread, Task<T> task) {
  auto state = std::make_shared<detail::TaskState<T>>();
  state->context = {&mainThread, state->stopSource.get_token()};
  const detail::Root root = detail::runRoot<T>(state, std::move(task));
  root.frame.promise().context = &state->context;
  state->id = mainThread.adopt(root.frame);
  mainThread.post([&mainThread, id = state->id] {
    if (auto frame = mainThread.frameOf(id)) frame.resume();
  });
  return TaskHandle<T>(std::move(state));
}

enum class SleepEnd { elapsed, cancelled };

// Waits for `duration`. Cancellation wakes it at once; what that means is for the caller.
Task<SleepEnd> sleepFor(Duration duration);

// Waits for `duration`, also when cancelled meanwhile: for flows that must not be cut short, such
// as one that has borrowed something of the user's.
Task<> sleepInFull(Duration duration);

// Lets work that was posted before this go first.
Task<> yieldTurn();

}  // namespace quillo
