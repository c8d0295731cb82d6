#include "base/task.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/gate.h"
#include "base/manual_main_thread.h"
#include "base/published.h"
#include "base/single_flight.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::_;
using testing::ElementsAre;

class TaskTest : public testing::Test {
 protected:
  ~TaskTest() override {
    main_.abandonTasks();
    EXPECT_EQ(liveFrameCount(), framesBefore_);
  }

  std::int64_t framesBefore_ = liveFrameCount();
  ManualMainThread main_;
  std::vector<std::string> seen_;
};

Task<int> addLater(std::vector<std::string>& seen, int a, int b) {
  seen.push_back("add begins");
  co_await sleepFor(10ms);
  co_return a + b;
}

Task<> addTwice(std::vector<std::string>& seen) {
  const int first = co_await addLater(seen, 1, 2);
  const int second = co_await addLater(seen, first, 10);
  seen.push_back(std::to_string(second));
}

TEST_F(TaskTest, StartsInALaterTurnAndAwaitsInTheSame) {
  const auto handle = start(main_, addTwice(seen_));
  EXPECT_THAT(seen_, ElementsAre());
  main_.drain();
  EXPECT_THAT(seen_, ElementsAre("add begins"));
  main_.pass(20ms);
  EXPECT_THAT(seen_, ElementsAre("add begins", "add begins", "13"));
  EXPECT_TRUE(handle.isFinished());
  EXPECT_EQ(main_.liveTaskCount(), 0u);
}

Task<> sleepLong(std::vector<std::string>& seen) {
  const SleepEnd end = co_await sleepFor(1h);
  seen.push_back(end == SleepEnd::cancelled ? "cancelled" : "elapsed");
  seen.push_back(co_await sleepFor(1h) == SleepEnd::cancelled ? "cancelled" : "elapsed");
  co_await checkCancellation();
  seen.push_back("not reached");
}

Task<> awaitSleeper(std::vector<std::string>& seen) {
  co_await sleepLong(seen);
}

TEST_F(TaskTest, CancellationReachesTheInnermostSleepAndIsSeenAgain) {
  const auto handle = start(main_, awaitSleeper(seen_));
  main_.pass(1min);
  handle.cancel();
  EXPECT_EQ(main_.timerCount(), 1u);
  main_.drain();
  EXPECT_THAT(seen_, ElementsAre("cancelled", "cancelled"));
  EXPECT_EQ(main_.timerCount(), 0u);
  // The error stays with the handle, for whoever awaits it.
  EXPECT_TRUE(main_.lostErrors.empty());
}

Task<int> failing() {
  co_await sleepFor(1ms);
  throw DecodingError("a.b", "is missing");
}

Task<> reportOutcome(TaskHandle<int> handle, std::vector<std::string>& seen) {
  try {
    seen.push_back(std::to_string(co_await handle.value()));
  } catch (const Error& error) {
    seen.push_back(error.description());
  }
}

TEST_F(TaskTest, EveryWaiterGetsTheErrorAndAnErrorThatNobodyCanAwaitIsReported) {
  {
    const auto handle = start(main_, failing());
    start(main_, reportOutcome(handle, seen_));
    start(main_, reportOutcome(handle, seen_));
    main_.pass(1ms);
    start(main_, reportOutcome(handle, seen_));
    main_.drain();
  }
  EXPECT_THAT(seen_, ElementsAre("a.b: is missing", "a.b: is missing", "a.b: is missing"));
  EXPECT_TRUE(main_.lostErrors.empty());

  start(main_, failing());
  main_.pass(1ms);
  ASSERT_EQ(main_.lostErrors.size(), 1u);
  EXPECT_EQ(describe(main_.lostErrors[0]), "a.b: is missing");
}

TEST_F(TaskTest, AbandoningDestroysFramesTimersAndWakeUpsAlike) {
  Completion<> never(main_);
  start(main_, addTwice(seen_));
  start(main_, awaitSleeper(seen_));
  main_.drain();
  main_.abandonTasks();
  EXPECT_EQ(liveFrameCount(), framesBefore_);
  EXPECT_EQ(main_.timerCount(), 0u);
  main_.pass(2h);  // nothing left that could touch a dead frame
}

Task<std::string> waitFor(Completion<std::string> answer) {
  co_return co_await answer;
}
Task<std::string> waitOrGiveUp(Completion<std::string> answer) {
  co_return co_await awaitOrCancel<std::string>(answer, [answer] { answer.deliver("given up"); });
}

TEST_F(TaskTest, CompletionsKeepTheFirstDeliveryWheneverItComes) {
  Completion<std::string> early(main_);
  early.deliver("first");
  early.deliver("second");
  Completion<std::string> cancelled(main_);
  const auto a = start(main_, waitFor(early));
  const auto b = start(main_, waitOrGiveUp(cancelled));
  main_.drain();
  b.cancel();
  cancelled.deliverFromAnyThread("too late");
  main_.drain();
  std::vector<std::string> got;
  auto collect = [](TaskHandle<std::string> h, std::vector<std::string>& out) -> Task<> {
    out.push_back(co_await h.value());
  };
  start(main_, collect(a, got));
  start(main_, collect(b, got));
  main_.drain();
  EXPECT_THAT(got, ElementsAre("first", "given up"));
}

Task<> holdGate(Gate& gate, std::string name, std::vector<std::string>& seen) {
  co_await gate.enter();
  seen.push_back(name + " in");
  co_await sleepFor(10ms);
  seen.push_back(name + " out");
  gate.leave();
}

TEST_F(TaskTest, TheGateIsFirstComeFirstServedEvenForCancelledWaiters) {
  Gate gate;
  start(main_, holdGate(gate, "a", seen_));
  const auto b = start(main_, holdGate(gate, "b", seen_));
  start(main_, holdGate(gate, "c", seen_));
  main_.pass(1ms);
  b.cancel();
  main_.pass(9ms);
  start(main_, holdGate(gate, "d", seen_));
  main_.pass(1s);
  EXPECT_THAT(seen_,
              ElementsAre("a in", "a out", "b in", "b out", "c in", "c out", "d in", "d out"));
  EXPECT_FALSE(gate.isBusy());
}

Task<int> numberInFull(int& runs) {
  const int number = ++runs;
  co_await sleepInFull(10ms);
  co_return number;
}

TEST_F(TaskTest, SingleFlightRunsOneTaskForAllCallersAndForgetsThatOneAlone) {
  SingleFlight<int> flight(main_);
  int runs = 0;
  const auto ask = [&] {
    const auto asking = start(main_, flight.join([&] { return numberInFull(runs); }));
    start(main_, reportOutcome(asking, seen_));
    main_.pass(1ms);
    return asking;
  };
  const auto first = ask();
  first.cancel();
  ask();
  EXPECT_THAT(seen_, ElementsAre("The operation was cancelled."));
  main_.pass(10ms);
  EXPECT_THAT(seen_, ElementsAre(_, "1"));

  ask();
  flight.cancelAndForget();
  ask();
  main_.pass(8ms);  // the one that was forgotten has ended
  ask();
  main_.pass(10ms);
  EXPECT_THAT(seen_, ElementsAre(_, "1", "2", "3", "3"));
  EXPECT_FALSE(flight.isRunning());
}

TEST_F(TaskTest, YieldingLetsPostedWorkGoFirst) {
  auto yielder = [](MainThread& main, std::vector<std::string>& seen) -> Task<> {
    main.post([&seen] { seen.push_back("posted"); });
    co_await yieldTurn();
    seen.push_back("resumed");
  };
  start(main_, yielder(main_, seen_));
  main_.drain();
  EXPECT_THAT(seen_, ElementsAre("posted", "resumed"));
}

TEST_F(TaskTest, TimersAreForgottenByReassignment) {
  int fired = 0;
  Timer timer(main_, 10ms, [&] { fired += 1; });
  timer = Timer(main_, 20ms, [&] { fired += 10; });
  EXPECT_TRUE(timer.isPending());
  main_.pass(30ms);
  EXPECT_EQ(fired, 10);
  EXPECT_FALSE(timer.isPending());
}

TEST(PublishedTest, ObserversSeeEveryAssignmentUntilTheirSubscriptionGoes) {
  Published<int> value(1);
  std::vector<int> a, b;
  Subscription late;
  const auto first = value.observe([&](int v) {
    a.push_back(v);
    if (v == 3) late = value.observe([&](int w) { b.push_back(w); });
  });
  value = 2;
  value = 2;
  value = 3;
  value = 4;
  EXPECT_THAT(a, ElementsAre(2, 2, 3, 4));
  EXPECT_THAT(b, ElementsAre(4));
  late = {};
  value = 5;
  EXPECT_THAT(b, ElementsAre(4));
}

}  // namespace
}  // namespace quillo
