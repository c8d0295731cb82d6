// A simulated desktop with an account service, and one run after another of the program on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "account/auth_service.h"
#include "base/iso8601.h"
#include "hosts/simulated/simulated_desktop.h"
#include "state/app_state.h"

namespace quillo {

using simulated::NotHTTP;
using simulated::RecordedRequest;
using simulated::Reply;

class AccountTest : public testing::Test {
 protected:
  static constexpr const char* tokenPath = "/auth/v1/token";

  AccountTest() {
    desktop_.clock().set(*dateFromIso8601("2026-03-04T09:00:00Z"));
    defaults().setText("mac.deviceId", "qd_1_a");
  }
  void TearDown() override {
    desktop_.abandonTasks();
    EXPECT_EQ(desktop_.newLiveFrames(), 0);
  }

  // Starts the program; a second time quits the first run.
  MacAuthService& launch() {
    desktop_.abandonTasks();
    auth_.reset();
    history_.reset();
    state_.emplace(desktop_.mainThread(), defaults(), desktop_.clock(), desktop_.random(),
                   desktop_.machine(), desktop_.loginItem(), desktop_.application(),
                   desktop_.log());
    state_->setUsageSource([this] { return countUsageRefresh(); });
    history_.emplace(*state_, *state_, defaults(), desktop_.files(), desktop_.queues(),
                     desktop_.clock(), desktop_.random());
    auth_.emplace(desktop_.mainThread(), desktop_.network(), defaults(), tokenStore_, *state_,
                  *history_, desktop_.clock(), desktop_.log(),
                  Backend{"https://service.test", "anonymous"});
    return *auth_;
  }
  // With a session of the last run; a token may be empty.
  MacAuthService& launchWith(std::string_view access, std::string_view refresh,
                             double secondsLeft) {
    tokenStore_.save(access, "mac.accessToken");
    tokenStore_.save(refresh, "mac.refreshToken");
    defaults().setText("mac.userId", "u1");
    defaults().setText("mac.userEmail", "ada@example.org");
    defaults().setNumber("mac.tokenExpiresAt", secondsNow() + secondsLeft);
    return launch();
  }
  MacAuthService& launchSignedIn(double secondsLeft = 3600) {
    return launchWith("access1", "refresh1", secondsLeft);
  }

  static Bytes session(std::string access, std::string refresh, std::string expiresIn = "3600") {
    return R"({"access_token":")" + access + R"(","refresh_token":")" + refresh +
           R"(","expires_in":)" + expiresIn + R"(,"user":{"id":"u1","email":"ada@example.org"}})";
  }
  void answer(const std::string& path, int status, const Bytes& body = "{}", Duration delay = {}) {
    desktop_.network().reply(path, Reply{.status = status, .body = body, .delay = delay});
  }
  std::vector<RecordedRequest> refreshes() { return desktop_.network().requestsTo(tokenPath); }
  // From now until the next refresh is asked for.
  Duration timeToNextRefresh() {
    const MonotonicTime began = desktop_.now();
    const std::size_t before = refreshes().size();
    EXPECT_TRUE(desktop_.runUntil([&] { return refreshes().size() > before; }));
    return desktop_.now() - began;
  }
  simulated::MemoryUserDefaults& defaults() { return desktop_.userDefaults(); }
  double secondsNow() { return secondsSince1970(desktop_.clock().now()); }

  simulated::SimulatedDesktop desktop_;
  MacKeychainTokenStore tokenStore_{desktop_.keychain(), desktop_.log()};
  int usageRefreshes_ = 0;
  std::optional<MacAppState> state_;
  std::optional<MacHistoryStore> history_;
  std::optional<MacAuthService> auth_;

 private:
  Task<UsageData> countUsageRefresh() {
    ++usageRefreshes_;
    co_return UsageData{.plan = "pro"};
  }
};

}  // namespace quillo
