#include "core/dictation_failures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "api/api_error.h"
#include "hosts/simulated/simulated_desktop.h"
#include "platform/url_session.h"
#include "recorded_panels.h"

namespace quillo {
namespace {

using testing::ElementsAre;

template <class E>
std::exception_ptr thrown(E error) {
  return std::make_exception_ptr(std::move(error));
}
std::exception_ptr urlError(URLErrorCode code) {
  return thrown(URLError(code, "transport"));
}
std::exception_ptr reply(int status, std::string body) {
  return thrown(APIError::serverError(status, std::move(body)));
}

TEST(DictationFailuresTest, KnowsACancelInEveryDisguise) {
  EXPECT_TRUE(isCancellation(thrown(CancellationError())));
  EXPECT_TRUE(isCancellation(urlError(URLErrorCode::cancelled)));
  EXPECT_TRUE(isCancellation(thrown(APIError::networkError(urlError(URLErrorCode::cancelled)))));
  EXPECT_TRUE(isCancellation(
      thrown(APIError::networkError(thrown(APIError::networkError(thrown(CancellationError())))))));
  EXPECT_FALSE(isCancellation(urlError(URLErrorCode::timedOut)));
  EXPECT_FALSE(isCancellation(thrown(SystemError({"other", -999, ""}))));
  EXPECT_FALSE(isCancellation(thrown(APIError::decodingError(thrown(CancellationError())))));
  EXPECT_FALSE(isCancellation(thrown(std::runtime_error("cancelled"))));
}

TEST(DictationFailuresTest, KnowsAPlanLimitByItsBody) {
  const auto message = [](std::exception_ptr error) {
    const auto limit = planLimitInfo(error);
    return limit ? limit->message : "none";
  };
  const std::string general =
      "You've reached your plan limit. Upgrade your plan or try again later.";
  EXPECT_EQ(message(reply(402, R"({"error":"Daily LIMIT reached"})")), general);
  EXPECT_EQ(message(reply(500, R"({"limitType":null,"message":"No minutes left."})")),
            "No minutes left.");
  EXPECT_EQ(message(reply(429, R"({"error":"too many requests"})")), "none");
  EXPECT_EQ(message(reply(429, R"({"error":7,"message":"limit"})")), "none");
  EXPECT_EQ(message(reply(402, R"(["limit"])")), "none");
  EXPECT_EQ(message(reply(402, "limit")), "none");
  EXPECT_EQ(message(thrown(APIError::invalidResponse())), "none");
  EXPECT_EQ(message(thrown(CancellationError())), "none");
  EXPECT_EQ(planLimitInfo(reply(402, R"({"error":"limit","limitScope":"device"})"))->scope,
            LimitScope::device);
  EXPECT_EQ(planLimitInfo(reply(402, R"({"error":"limit","limitScope":"user"})"))->scope,
            LimitScope::account);
}

TEST(DictationFailuresTest, TellsTheUserASentenceAndAShortStatus) {
  const std::string general = "Something went wrong. Please try again.";
  EXPECT_EQ(userMessage(thrown(DecodingError("text", "is missing"))), general);
  EXPECT_EQ(userMessage(thrown(std::runtime_error("x"))), general);
  EXPECT_EQ(userMessage(reply(400, R"({"message":"File too large."})")), "File too large.");

  const auto status = [](std::exception_ptr error) { return statusTitle(userMessage(error)); };
  const auto network = [&](URLErrorCode code) {
    return status(thrown(APIError::networkError(urlError(code))));
  };
  EXPECT_EQ(network(URLErrorCode::timedOut), "Request timed out");
  EXPECT_EQ(network(URLErrorCode::cannotFindHost), "Connection problem");
  EXPECT_EQ(network(URLErrorCode::notConnectedToInternet), "Connection problem");
  EXPECT_EQ(status(reply(413, "Exceeds the MAXIMUM SIZE")), "Recording too large");
  EXPECT_EQ(status(reply(413, "This is too large")), "Recording too large");
  EXPECT_EQ(status(reply(401, "Please sign in again.")), "Sign in required");
  EXPECT_EQ(status(reply(400, "No speech found")), "No speech detected");
  EXPECT_EQ(status(reply(400, "Connection timed out")), "Request timed out") << "the first decides";
  EXPECT_EQ(status(reply(418, "I'm a teapot")), "Couldn't transcribe");
}

TEST(DictationFailuresTest, AsksWhetherToSeeThePlans) {
  simulated::SimulatedDesktop desktop;
  RecordedNavigator navigator;
  const auto ask = [&](LimitScope scope, std::size_t answer) {
    desktop.alerts().answer(answer);
    showLimitAlert({"No minutes left.", scope}, desktop.application(), desktop.alerts(), navigator);
    return desktop.alerts().shown().back();
  };
  const Alerts::Alert account = ask(LimitScope::account, 1);
  EXPECT_EQ(account.messageText, "Plan limit reached");
  EXPECT_EQ(account.informativeText, "No minutes left.");
  EXPECT_THAT(account.buttons, ElementsAre("View Plans", "Not now"));
  EXPECT_EQ(navigator.plansOpened, 0);
  EXPECT_EQ(ask(LimitScope::device, 0).messageText, "This Mac's free limit reached");
  EXPECT_EQ(navigator.plansOpened, 1);
  EXPECT_EQ(desktop.application().activations(), 2);
}

}  // namespace
}  // namespace quillo
