#include "core/dictation_failures.h"

#include <gtest/gtest.h>

#include "api/api_error.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

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
    return limit ? limit->message.english() : "none";
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

}  // namespace
}  // namespace quillo
