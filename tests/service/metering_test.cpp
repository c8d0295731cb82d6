#include "service/metering.h"

#include <gtest/gtest.h>

#include "service/running_service.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

constexpr double minute = 60.0;

Caller account(const std::string& id, const std::string& machine,
               const std::string& plan = "free") {
  return {CallerKind::account, id, plan, "qd_" + machine, machine};
}
Caller visitor(const std::string& machine) {
  return {CallerKind::guest, "mx_qd_" + machine, "free", "qd_" + machine, machine};
}

// Ten minutes a day and a thousand characters a month.
struct Meter {
  ManualClock clock;
  Database database{":memory:"};
  PlanCatalogue plans{10, 1000};
  Metering metering{database, plans, clock.clock()};

  void chunk(const Caller& who, std::int64_t index, double seconds) {
    metering.countSpeech(who, seconds, SessionPart{"session", index});
  }
  void whole(const Caller& who, double seconds) {
    metering.countSpeech(who, seconds, SessionPart{"session", std::nullopt});
  }
  double minutes(const Caller& who) {
    const auto report = metering.report(who);
    return report.account ? report.account->minutes : report.device.minutes;
  }
  // The scope of the refusal, or nothing when it was counted.
  std::string refusal(const Caller& who, double seconds,
                      std::optional<SessionPart> part = std::nullopt) {
    try {
      metering.countSpeech(who, seconds, part);
      return "";
    } catch (const ServiceError& error) {
      EXPECT_EQ(error.reply().status, 429);
      return error.reply().body["limitScope"];
    }
  }
};

TEST(Metering, RecordingThatArrivesInPartsAndWholeCountsOnce) {
  Meter meter;
  const Caller ada = account("ada", "laptop");
  meter.chunk(ada, 0, 1 * minute);
  meter.chunk(ada, 1, 2 * minute);
  meter.chunk(ada, 1, 2 * minute);  // sent again after a lost reply
  EXPECT_DOUBLE_EQ(meter.minutes(ada), 3);
  meter.whole(ada, 3.5 * minute);  // the parts left out half a minute
  EXPECT_DOUBLE_EQ(meter.minutes(ada), 3.5);
  meter.whole(ada, 3.5 * minute);
  meter.chunk(ada, 2, 0.5 * minute);  // was heard in the whole already
  EXPECT_DOUBLE_EQ(meter.minutes(ada), 3.5);

  meter.metering.countSpeech(ada, minute, SessionPart{"another", 0});
  meter.metering.countSpeech(ada, minute, std::nullopt);
  EXPECT_DOUBLE_EQ(meter.minutes(ada), 5.5);
  // The same session name of somebody else is another session.
  meter.whole(account("ben", "desktop"), minute);
  EXPECT_DOUBLE_EQ(meter.minutes(account("ben", "desktop")), 1);
}

TEST(Metering, RequestThatUsesUpTheAllowanceIsServedAndTheNextRefused) {
  Meter meter;
  const Caller ada = account("ada", "laptop", "free");
  EXPECT_EQ(meter.refusal(ada, 9 * minute), "");
  EXPECT_EQ(meter.refusal(ada, 2 * minute), "");
  EXPECT_EQ(meter.refusal(ada, 1), "account");
  EXPECT_DOUBLE_EQ(meter.minutes(ada), 11);
  EXPECT_DOUBLE_EQ(meter.metering.report(ada).remainingMinutes, 0);
  meter.clock.advance(std::chrono::hours(15));  // past midnight, UTC
  EXPECT_DOUBLE_EQ(meter.metering.report(ada).remainingMinutes, 10);
  EXPECT_EQ(meter.refusal(ada, 1), "");
}

TEST(Metering, WholeRecordingFollowsItsAdmittedPartsButNotRefusedOnes) {
  Meter meter;
  const Caller ada = account("ada", "laptop");
  meter.chunk(ada, 0, 5 * minute);
  meter.chunk(ada, 1, 5 * minute);
  // The allowance is used up by these parts; the whole adds only the seams.
  EXPECT_EQ(meter.refusal(ada, 10 * minute + 0.4, SessionPart{"session", std::nullopt}), "");
  // A further part is new speech, and so is a whole that is longer by it.
  EXPECT_EQ(meter.refusal(ada, 0.5, SessionPart{"session", 2}), "account");
  EXPECT_EQ(meter.refusal(ada, 11 * minute, SessionPart{"session", std::nullopt}), "account");
  EXPECT_NEAR(meter.minutes(ada), 10 + 0.4 / minute, 1e-9);
}

TEST(Metering, MachineGetsNoMoreThanOneUser) {
  Meter meter;
  EXPECT_EQ(meter.refusal(account("ada", "laptop"), 10 * minute), "");
  EXPECT_EQ(meter.refusal(account("ada", "desktop"), 1), "account");
  EXPECT_EQ(meter.refusal(account("ben", "laptop"), 1), "device");
  EXPECT_EQ(meter.refusal(visitor("laptop"), 1), "device");
  EXPECT_DOUBLE_EQ(meter.metering.report(account("ben", "laptop")).remainingMinutes, 0);
  EXPECT_EQ(meter.refusal(account("ben", "desktop"), 1), "");
  // A plan without a device cap neither minds the machine nor uses it up.
  EXPECT_EQ(meter.refusal(account("eve", "laptop", "pro"), 20 * minute), "");
  EXPECT_EQ(meter.refusal(account("eve", "tablet", "pro"), 20 * minute), "");
  EXPECT_EQ(meter.refusal(visitor("tablet"), 1), "");
}

TEST(Metering, CharactersAreCountedByTheMonth) {
  Meter meter;
  const Caller ada = account("ada", "laptop");
  meter.metering.countCharacters(ada, 1000);
  EXPECT_THROW(meter.metering.demandCharacters(ada), ServiceError);
  EXPECT_EQ(meter.refusal(ada, 1), "");  // minutes are another allowance
  meter.clock.advance(std::chrono::hours(24 * 28));
  meter.metering.demandCharacters(ada);
  EXPECT_EQ(meter.metering.report(ada).remainingCharacters, 1000);
}

TEST(Usage, CountsTypedCharactersAndReachedLimitsSayWhose) {
  ServiceOptions options = testOptions();
  options.freeMonthlyCharacters = 12;
  RunningService service(options);
  const Identity ada = service.identity(service.signUp("ada@example.com"), "qd_a", "LAPTOP");
  // Dictated text was metered as speech.
  const Answer spoken =
      service.transform(ada, {{"text", "a dictated sentence"}, {"inputAlreadyMetered", true}});
  EXPECT_EQ(spoken.body["charactersUsed"], 0);
  EXPECT_EQ(service.transform(ada, {{"text", "a naïve café"}}).body["charactersUsed"], 12);
  const Answer usage = service.usage(ada);
  EXPECT_EQ(usage.body["accountMonthlyChars"], 12);
  EXPECT_EQ(usage.body["deviceMonthlyChars"], 12);
  EXPECT_EQ(usage.body["remainingChars"], 0);
  EXPECT_FALSE(service.usage(guest("qd_b", "LAPTOP")).body.contains("accountDailyMinutes"));

  const Answer refused = service.transform(ada, {{"text", "more"}});
  EXPECT_EQ(refused.status, 429);
  EXPECT_EQ(refused.at("limitType"), "monthlyChars");
  EXPECT_EQ(refused.at("limitScope"), "account");
  const Answer here = service.transform(guest("qd_b", "LAPTOP"), {{"text", "more"}});
  EXPECT_EQ(here.at("limitScope"), "device");
  // What cannot be done is not counted.
  EXPECT_EQ(service.transform(guest("qd_c"), {{"text", "hallo"}, {"inputLanguage", "de"}}).status,
            422);
  EXPECT_EQ(service.usage(guest("qd_c")).body["monthlyChars"], 0);
}

}  // namespace
}  // namespace quillo::service
