#include "api/fresh_auth.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using testing::ElementsAre;

// A session that does as it is told, and a request that meets one answer after another.
class FreshAuthTest : public testing::Test, protected SessionAuthority {
 protected:
  bool isLoggedIn() const override { return loggedIn_; }
  bool needsRefresh() const override { return stale_; }
  Task<bool> refreshSession() override {
    events_.push_back("refresh");
    co_await sleepFor(std::chrono::milliseconds(10));
    co_return refreshWorks_;
  }

  Task<int> request() {
    events_.push_back("request");
    const int status = statuses_.at(0);
    statuses_.erase(statuses_.begin());
    if (signsOutDuringRequest_) loggedIn_ = false;
    if (status != 200) throw APIError::serverError(status, std::to_string(status));
    co_return status;
  }

  // The status that the caller gets, or the words of the error.
  std::string outcome() {
    try {
      return std::to_string(
          desktop_.await(withFreshAuth<int>(*this, [this] { return request(); })));
    } catch (const APIError& error) {
      return error.errorDescription().value();
    }
  }

  simulated::SimulatedDesktop desktop_;
  bool loggedIn_ = true;
  bool stale_ = false;
  bool refreshWorks_ = true;
  bool signsOutDuringRequest_ = false;
  std::vector<int> statuses_;
  std::vector<std::string> events_;
};

TEST_F(FreshAuthTest, AStaleSessionIsRefreshedBeforeTheRequest) {
  stale_ = true;
  statuses_ = {200};
  EXPECT_EQ(outcome(), "200");
  EXPECT_THAT(events_, ElementsAre("refresh", "request"));

  refreshWorks_ = false;
  EXPECT_EQ(outcome(), "Please sign in again.");
  EXPECT_THAT(events_, ElementsAre("refresh", "request", "refresh"));
}

TEST_F(FreshAuthTest, ARefusedRequestIsMadeAgainOnceAfterARefresh) {
  for (const int refusal : {401, 403}) {
    events_.clear();
    statuses_ = {refusal, 200};
    EXPECT_EQ(outcome(), "200");
    EXPECT_THAT(events_, ElementsAre("request", "refresh", "request"));
  }
  statuses_ = {401, 403};
  EXPECT_EQ(outcome(), "403");

  events_.clear();
  refreshWorks_ = false;
  statuses_ = {401};
  EXPECT_EQ(outcome(), "Please sign in again.");
  EXPECT_THAT(events_, ElementsAre("request", "refresh"));
}

TEST_F(FreshAuthTest, OtherErrorsAndGuestsAreLeftAlone) {
  statuses_ = {429};
  EXPECT_EQ(outcome(), "429");
  loggedIn_ = false;
  stale_ = true;
  statuses_ = {401};
  EXPECT_EQ(outcome(), "401");
  EXPECT_THAT(events_, ElementsAre("request", "request"));
}

// The session is read again after the refusal: its end is no reason to refresh.
TEST_F(FreshAuthTest, ASessionThatEndedMeanwhileIsNotRefreshed) {
  signsOutDuringRequest_ = true;
  statuses_ = {401};
  EXPECT_EQ(outcome(), "401");
  EXPECT_THAT(events_, ElementsAre("request"));
}

}  // namespace
}  // namespace quillo
