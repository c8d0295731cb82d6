// What every main thread keeps.
#pragma once

#include <gmock/gmock.h>

#include <numeric>
#include <vector>

#include "contracts/support/contract_host.h"

namespace quillo::contracts {

class MainThreadHost : public ContractHost {
 public:
  // Runs `work` outside the main thread and waits for it, where there is an outside.
  virtual void elsewhere(const std::function<void()>& work) = 0;
};

class MainThreadContract : public PortContract<MainThreadHost> {
 protected:
  MainThread& mainThread() { return host().mainThread(); }
  // Work that leaves a mark.
  std::function<void()> mark(int number) {
    return [this, number] { marks_.push_back(number); };
  }
  bool runUntilMarks(std::size_t count) {
    return host().runUntil([this, count] { return marks_.size() >= count; });
  }

  std::vector<int> marks_;
};

TEST_P(MainThreadContract, PostedWorkRunsInLaterTurnsInTheOrderOfPosting) {
  constexpr int count = 2000;
  mainThread().post([this] {
    mainThread().post(mark(count));
    marks_.push_back(1);
  });
  mainThread().post(mark(2));
  host().elsewhere([this] {
    for (int i = 3; i < count; ++i) mainThread().post(mark(i));
  });
  EXPECT_TRUE(marks_.empty()) << "nothing runs inside post";
  ASSERT_TRUE(runUntilMarks(count));
  std::vector<int> inOrder(count);
  std::iota(inOrder.begin(), inOrder.end(), 1);
  EXPECT_EQ(marks_, inOrder);
}

TEST_P(MainThreadContract, TimersFireOnceInTheOrderOfTheirTimesAndNeverEarly) {
  using std::chrono::milliseconds;
  struct Fired {
    Duration wanted;
    Duration after;
  };
  std::vector<Fired> fired;
  const MonotonicTime begun = mainThread().now();
  for (const Duration wanted : {Duration(milliseconds(90)), Duration(milliseconds(30)),
                                Duration(std::chrono::microseconds(30'400)), Duration::zero(),
                                Duration(milliseconds(-5)), Duration(milliseconds(60))}) {
    mainThread().callAfter(wanted, [&fired, wanted, begun, this] {
      fired.push_back({wanted, mainThread().now() - begun});
    });
  }
  mainThread().callAfter(std::chrono::hours(24 * 60), mark(1));  // longer than 32-bit milliseconds
  EXPECT_TRUE(fired.empty()) << "nothing runs inside callAfter";
  ASSERT_TRUE(host().runUntil([&] { return fired.size() == 6; }));
  for (const Fired& timer : fired) EXPECT_GE(timer.after, timer.wanted);
  EXPECT_TRUE(std::ranges::is_sorted(
      fired, {}, [](const Fired& timer) { return std::max(timer.wanted, Duration::zero()); }));
  host().runFor(milliseconds(50));
  EXPECT_EQ(fired.size(), 6u);
  EXPECT_TRUE(marks_.empty());
}

TEST_P(MainThreadContract, CancelledTimersStaySilent) {
  using std::chrono::milliseconds;
  const TimerId first = mainThread().callAfter(milliseconds(10), mark(1));
  mainThread().cancelTimer(first);
  mainThread().cancelTimer(first);
  mainThread().cancelTimer(TimerId::none);
  // One timer takes another with it, though both are due.
  TimerId third = TimerId::none;
  mainThread().callAfter(milliseconds(20), [&] { mainThread().cancelTimer(third); });
  third = mainThread().callAfter(milliseconds(20), mark(3));
  mainThread().callAfter(milliseconds(40), mark(4));
  ASSERT_TRUE(runUntilMarks(1));
  EXPECT_THAT(marks_, testing::ElementsAre(4));
}

// The second sleep begins where the first one's timer fires.
inline Task<> sleepTwice(Duration each, std::vector<SleepEnd>& ends) {
  ends.push_back(co_await sleepFor(each));
  ends.push_back(co_await sleepFor(each));
}

TEST_P(MainThreadContract, ASleepTakesItsTimeUnlessItIsCancelled) {
  std::vector<SleepEnd> ends;
  const MonotonicTime begun = mainThread().now();
  const auto full = start(mainThread(), sleepTwice(std::chrono::milliseconds(15), ends));
  const auto cut = start(mainThread(), sleepTwice(std::chrono::hours(1), ends));
  ASSERT_TRUE(host().runUntil([&] { return full.isFinished(); }));
  EXPECT_GE(mainThread().now() - begun, Duration(std::chrono::milliseconds(30)));
  cut.cancel();
  ASSERT_TRUE(host().runUntil([&] { return cut.isFinished(); }));
  EXPECT_THAT(ends, testing::ElementsAre(SleepEnd::elapsed, SleepEnd::elapsed, SleepEnd::cancelled,
                                         SleepEnd::cancelled));
}

}  // namespace quillo::contracts
