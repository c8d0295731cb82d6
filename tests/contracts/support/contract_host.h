// What every contract suite asks of a host, beside the port that it is about.
//
// A suite is a header. Each host that keeps the contract includes it in one source:
//
//   INSTANTIATE_TEST_SUITE_P(Linux, KeychainContract, hostedBy<LinuxKeychain>());
#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

#include "base/task.h"

namespace quillo::contracts {

// One host for one case. The limits are of the host's own time and only end a case that has failed.
class ContractHost {
 public:
  virtual ~ContractHost() = default;

  virtual MainThread& mainThread() = 0;
  // Runs the main thread until `holds`, at most for `limit`; whether it holds.
  virtual bool runUntil(const std::function<bool()>& holds,
                        Duration limit = std::chrono::seconds(20)) = 0;

  // Lets everything happen that happens within `duration`.
  void runFor(Duration duration) {
    bool isOver = false;
    const Timer end(mainThread(), duration, [&] { isOver = true; });
    EXPECT_TRUE(runUntil([&] { return isOver; }, duration + std::chrono::seconds(20)));
  }
};

// How a task ended.
template <class T>
struct Outcome {
  std::optional<detail::Stored<T>> value;
  std::exception_ptr error;

  // The value, or the error once more.
  const detail::Stored<T>& get() const {
    if (error) std::rethrow_exception(error);
    return value.value();
  }
  bool isKnown() const { return value || error; }
};

template <class T>
Task<> keepOutcome(Task<T> task, std::shared_ptr<Outcome<T>> outcome) {
  try {
    if constexpr (std::is_void_v<T>) {
      co_await std::move(task);
      outcome->value.emplace();
    } else {
      outcome->value.emplace(co_await std::move(task));
    }
  } catch (...) {
    outcome->error = std::current_exception();
  }
}

// A task on its way, and how it ended.
template <class T>
struct Running {
  TaskHandle<> handle;
  std::shared_ptr<Outcome<T>> outcome;
};

template <class T>
Running<T> startKept(ContractHost& host, Task<T> task) {
  auto outcome = std::make_shared<Outcome<T>>();
  auto handle = start(host.mainThread(), keepOutcome(std::move(task), outcome));
  return {handle, outcome};
}

template <class T>
Outcome<T> await(ContractHost& host, const Running<T>& running,
                 Duration limit = std::chrono::seconds(20)) {
  EXPECT_TRUE(host.runUntil([&] { return running.handle.isFinished(); }, limit))
      << "the task did not end";
  return *running.outcome;
}

template <class T>
Outcome<T> await(ContractHost& host, Task<T> task) {
  return await(host, startKept(host, std::move(task)));
}

template <class Host>
using HostFactory = std::function<std::unique_ptr<Host>()>;

template <class Made>
auto hostedBy() {
  return testing::Values([] { return std::make_unique<Made>(); });
}

// Makes a fresh host for each case, and sees that no coroutine frame is left behind.
template <class Host>
class PortContract : public testing::TestWithParam<HostFactory<Host>> {
 protected:
  PortContract() : framesAtStart_(liveFrameCount()), host_(this->GetParam()()) {}

  Host& host() { return *host_; }
  void TearDown() override {
    host_->mainThread().abandonTasks();
    EXPECT_EQ(liveFrameCount(), framesAtStart_) << "coroutine frames are left";
  }

 private:
  std::int64_t framesAtStart_;
  std::unique_ptr<Host> host_;
};

}  // namespace quillo::contracts
