// How long an application may keep the main thread waiting.
#include <gtest/gtest.h>

#include "hosts/linux/atspi/response_budget.h"

namespace quillo::linux_host {
namespace {

using std::chrono::milliseconds;

// Asks all the time, as a badge would without any restraint of its own; how long it waited in all.
Duration waitedWithin(Duration span, Duration answerTime, bool answers) {
  ResponseBudget budget;
  Duration waited{};
  for (MonotonicTime now{}; now.sinceStart < span; now = now + milliseconds(1)) {
    const Duration left = budget.left(now);
    if (left <= Duration::zero()) continue;
    const MonotonicTime asked = now;
    const bool isAnswered = answers && answerTime <= left;
    now = now + (isAnswered ? answerTime : std::min(left, Duration(milliseconds(350))));
    waited += now - asked;
    isAnswered ? budget.answered(asked, now) : budget.ranOut(asked, now);
  }
  return waited;
}

TEST(ResponseBudgetTest, ASlowOrHungApplicationCostsFourTenthsOfASecondInFive) {
  for (const milliseconds slow : {milliseconds(60), milliseconds(120), milliseconds(340)})
    EXPECT_LE(waitedWithin(std::chrono::seconds(60), slow, true), milliseconds(12 * 400 + 400))
        << slow.count();
  EXPECT_LE(waitedWithin(std::chrono::seconds(60), {}, false), milliseconds(12 * 400));
  EXPECT_GE(waitedWithin(std::chrono::seconds(60), milliseconds(2), true), milliseconds(30'000))
      << "a prompt one is asked as often as one likes";
}

}  // namespace
}  // namespace quillo::linux_host
