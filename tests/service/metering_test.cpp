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
  try {
    meter.metering.demandCharacters(ada);
    FAIL() << "nothing is left";
  } catch (const ServiceError& error) {
    EXPECT_EQ(encodeJson(error.reply().body),
              R"({"error":"Plan limit reached","limitType":"monthlyChars",)"
              R"("message":"Your account has used all 1000 characters for this month. )"
              R"(Upgrade your plan or try again next month.","limitScope":"account"})");
  }
  EXPECT_EQ(meter.refusal(ada, 1), "");  // minutes are another allowance
  meter.clock.advance(std::chrono::hours(24 * 28));
  meter.metering.demandCharacters(ada);
  EXPECT_EQ(meter.metering.report(ada).remainingCharacters, 1000);
}

TEST(Usage, IsReportedInTheOrderOfItsFields) {
  RunningService service;
  const Answer session = service.signUp("ada@example.com");
  const Identity ada = service.identity(session, "qd_ada", "HARDWARE");
  ASSERT_EQ(service.transform(ada, {{"text", "a naïve café"}}).body["charactersUsed"], 12);

  std::string keys;
  const Answer usage = service.usage(ada);
  for (const auto& [key, value] : usage.body.items()) keys += key + " ";
  EXPECT_EQ(keys,
            "userId deviceId plan dailyMinutes monthlyChars limits remainingMinutes "
            "remainingChars isGuest updatedAt accountDailyMinutes accountMonthlyChars "
            "deviceDailyMinutes deviceMonthlyChars hasDeviceCap ");
  EXPECT_EQ(usage.body["monthlyChars"], 12);
  EXPECT_EQ(usage.body["deviceMonthlyChars"], 12);
  EXPECT_EQ(usage.body["remainingChars"], 199'988);
  EXPECT_EQ(usage.at("updatedAt"), "2026-03-04T09:15:02Z");

  const Answer visiting = service.usage(guest("qd_other", "HARDWARE"));
  EXPECT_EQ(visiting.body["remainingChars"], 199'988);
  EXPECT_FALSE(visiting.body.contains("accountDailyMinutes"));
}

TEST(Usage, DictatedTextWasMeteredAsSpeechAndReachedLimitsSayWhose) {
  ServiceOptions options = testOptions();
  options.freeMonthlyCharacters = 10;
  RunningService service(options);
  const Identity ada = service.identity(service.signUp("ada@example.com"), "qd_a", "LAPTOP");
  const Answer spoken =
      service.transform(ada, {{"text", "a dictated sentence"}, {"inputAlreadyMetered", true}});
  EXPECT_EQ(spoken.body["charactersUsed"], 0);
  EXPECT_EQ(service.transform(ada, {{"text", "ten letter"}}).status, 200);

  const Answer refused = service.transform(ada, {{"text", "more"}});
  EXPECT_EQ(refused.status, 429);
  EXPECT_EQ(refused.at("limitScope"), "account");
  const Answer here = service.transform(guest("qd_b", "LAPTOP"), {{"text", "more"}});
  EXPECT_EQ(here.status, 429);
  EXPECT_EQ(here.at("limitScope"), "device");
  EXPECT_EQ(service.transform(guest("qd_b", "TABLET"), {{"text", "more"}}).status, 200);
  // What cannot be done is not counted.
  EXPECT_EQ(service.transform(guest("qd_c"), {{"text", "hallo"}, {"inputLanguage", "de"}}).status,
            422);
  EXPECT_EQ(service.usage(guest("qd_c")).body["monthlyChars"], 0);
}

TEST(Configuration, OffersThePlansThatAreMetered) {
  RunningService service;
  const Answer config = service.get("/functions/v1/get-config");
  ASSERT_EQ(config.status, 200);
  EXPECT_EQ(config.at("defaultPlan"), "free");
  const Json& free = config.body["plans"][0];
  const Json limits = service.usage(guest("qd_a")).body["limits"];
  EXPECT_EQ(free["id"], "free");
  EXPECT_EQ(free["limits_daily_minutes"], limits["dailyMinutes"]);
  EXPECT_EQ(free["limits_monthly_chars"], limits["monthlyChars"]);
}

TEST(Feedback, IsKeptWhenItSaysSomething) {
  RunningService service;
  Json body{{"message", "It works."},
            {"mode", "feedback"},
            {"requestType", "Issue"},
            {"app", "Quillo Mac 1.0 (1)"},
            {"os", "Debian"}};
  const std::string path = "/functions/v1/submit-feedback";
  EXPECT_EQ(service.post(path, body).status, 200);
  EXPECT_EQ(service.post(path, body, RunningService::headersOf(guest("qd_a"))).status, 200);
  EXPECT_EQ(
      service.post(path, body, {{"X-Quillo-API-Key", "x"}, {"X-Quillo-Device-ID", "y"}}).status,
      401);
  body["message"] = " \n";
  EXPECT_EQ(service.post(path, body).status, 400);
  body.erase("os");
  EXPECT_EQ(service.post(path, body).status, 400);
}

}  // namespace
}  // namespace quillo::service
