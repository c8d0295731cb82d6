// How a session is restored, refreshed, lost and ended.
#include "account_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class SessionTest : public AccountTest {
 protected:
  bool refresh() { return desktop_.await(auth_->refreshSession()); }
};

// --- Start ---

TEST_F(SessionTest, AValidSessionIsRestoredAndRefreshedTwoMinutesBeforeItsEnd) {
  launchSignedIn(3600);
  EXPECT_TRUE(auth_->isLoggedIn());
  EXPECT_EQ(auth_->userEmail.get(), "ada@example.org");
  EXPECT_EQ(defaults().text("mac.apiKey"), "access1");
  answer(tokenPath, 200, session("access2", "refresh2"));
  EXPECT_EQ(timeToNextRefresh(), 3480s);
  EXPECT_EQ(usageRefreshes_, 1);
  const RecordedRequest request = refreshes().front();
  EXPECT_EQ(request.method + " " + request.url,
            "POST https://service.test/auth/v1/token?grant_type=refresh_token");
  EXPECT_THAT(request.headers,
              ElementsAre(Pair("apikey", "anonymous"), Pair("Content-Type", "application/json")));
  EXPECT_EQ(request.body, R"({"refresh_token":"refresh1"})");

  desktop_.runFor(1s);
  EXPECT_EQ(tokenStore_.read("mac.refreshToken"), "refresh2");
  EXPECT_EQ(defaults().text("mac.apiKey"), "access2");
  EXPECT_EQ(usageRefreshes_, 2);
}

TEST_F(SessionTest, WithoutARefreshTokenTheSessionLastsAsLongAsItsAccessToken) {
  EXPECT_TRUE(launchWith("access1", "", 600).isLoggedIn());
  desktop_.runFor(479s);
  EXPECT_TRUE(auth_->isLoggedIn());
  desktop_.runFor(2s);  // due for a refresh that cannot be asked for
  EXPECT_FALSE(auth_->isLoggedIn());
  EXPECT_FALSE(launchWith("access1", "", 59).isLoggedIn());
  EXPECT_THAT(desktop_.network().requests(), IsEmpty());
}

TEST_F(SessionTest, TokensLeftInTheSettingsMoveIntoTheKeychainWhenItTakesThem) {
  defaults().setText("mac.accessToken", "plain-access");
  defaults().setText("mac.refreshToken", "plain-refresh");
  desktop_.keychain().refuse(simulated::MemoryKeychain::interactionNotAllowed);
  EXPECT_TRUE(launch().isLoggedIn());  // read where they are
  EXPECT_EQ(defaults().text("mac.refreshToken"), "plain-refresh");

  desktop_.keychain().allow();
  tokenStore_.save("newer", "mac.accessToken");
  EXPECT_TRUE(launch().isLoggedIn());
  EXPECT_EQ(tokenStore_.read("mac.refreshToken"), "plain-refresh");
  EXPECT_FALSE(defaults().contains("mac.refreshToken"));
  EXPECT_EQ(tokenStore_.read("mac.accessToken"), "newer");  // never overwritten by an old copy
}

// --- Refresh ---

TEST_F(SessionTest, OnlyARefusalOfTheSessionSignsOut) {
  for (const int status : {402, 404, 429, 500, 503}) {
    launchSignedIn();
    answer(tokenPath, status);
    EXPECT_FALSE(refresh());
    EXPECT_TRUE(auth_->isLoggedIn()) << status;
    answer(tokenPath, 200, session("access2", "refresh2"));
    EXPECT_EQ(timeToNextRefresh(), 60s) << status;
  }
  for (const int status : {400, 401, 403}) {
    launchSignedIn();
    answer(tokenPath, status);
    EXPECT_FALSE(refresh());
    EXPECT_FALSE(auth_->isLoggedIn()) << status;
  }
  EXPECT_THAT(desktop_.log().lines(), IsEmpty());
}

TEST_F(SessionTest, AnExpiredSessionSurvivesBrokenConnectionsAndIsTriedAgainEveryMinute) {
  desktop_.network().fail(tokenPath, URLErrorCode::networkConnectionLost);
  answer(tokenPath, 200, "<html>Sign in to the airport</html>");
  desktop_.network().reply(tokenPath, NotHTTP{});
  answer(tokenPath, 200, R"({"access_token":"a","user":{"email":"no id"}})");
  answer(tokenPath, 200, session("access2", "refresh2"));
  launchSignedIn(-5);
  EXPECT_EQ(timeToNextRefresh(), 0s);
  for (int retry = 0; retry < 4; ++retry) EXPECT_EQ(timeToNextRefresh(), 60s);
  EXPECT_TRUE(auth_->isLoggedIn());
  desktop_.runFor(1s);
  EXPECT_EQ(tokenStore_.read("mac.accessToken"), "access2");
  EXPECT_THAT(desktop_.log().lines(),
              ElementsAre("[auth] refresh failed: The network connection was lost.",
                          "[auth] refresh failed: is not JSON",
                          "[auth] refresh failed: user.id: is missing"));
}

TEST_F(SessionTest, ARefreshIsNeverSoonerThanHalfAMinuteWhateverLifetimeTheServerNames) {
  launchSignedIn(90);
  answer(tokenPath, 200, session("access2", "refresh2", "9223372036854775807"));
  EXPECT_EQ(timeToNextRefresh(), 30s);
  desktop_.runTurns();
  answer(tokenPath, 200, session("access3", "refresh3", "-7"));
  EXPECT_TRUE(refresh());
  answer(tokenPath, 500);
  EXPECT_EQ(timeToNextRefresh(), 30s);
}

// --- Sign-out ---

TEST_F(SessionTest, SigningOutForgetsTheUser) {
  launchSignedIn();
  desktop_.runTurns();
  defaults().setText("mac.refreshToken", "fallback copy");
  auth_->fullName = "Ada";
  std::vector<bool> seen;
  const Subscription watching = auth_->observeIsLoggedIn([&](bool now) { seen.push_back(now); });
  auth_->signOut();
  EXPECT_EQ(desktop_.keychain().itemCount(), 0u);
  for (const char* key : {"mac.refreshToken", "mac.userId", "mac.userEmail", "mac.apiKey"})
    EXPECT_FALSE(defaults().contains(key)) << key;
  EXPECT_EQ(defaults().number("mac.tokenExpiresAt"), 0);
  EXPECT_FALSE(auth_->userEmail.get() || auth_->fullName.get());
  EXPECT_EQ(history_->currentKey(), "device-qd_1_a");
  desktop_.runFor(2h);
  EXPECT_THAT(refreshes(), IsEmpty());
  EXPECT_THAT(seen, ElementsAre(false));  // once: no refresh is due any more
}

TEST_F(SessionTest, ARefreshUnderWayCannotUndoASignOut) {
  for (const Duration signOutAt : {1s, 2s}) {  // before the reply; in its moment
    launchSignedIn();
    answer(tokenPath, 200, session("access2", "refresh2"), 2s);
    const auto running = start(desktop_.mainThread(), auth_->refreshSession());
    desktop_.runTurns();
    desktop_.after(signOutAt, [this] { auth_->signOut(); });
    EXPECT_FALSE(desktop_.await(running.value()));
    desktop_.runFor(10min);
    EXPECT_FALSE(auth_->isLoggedIn());
    EXPECT_EQ(desktop_.keychain().itemCount(), 0u);
  }
  EXPECT_THAT(refreshes(), SizeIs(2));  // and nothing is tried again
  EXPECT_THAT(desktop_.log().lines(), IsEmpty());
}

TEST_F(SessionTest, ARefreshUnderWayCannotUndoASignIn) {
  launchSignedIn();
  answer(tokenPath, 200, session("late", "late"), 2s);
  answer(tokenPath, 200, session("access2", "refresh2"));
  const auto running = start(desktop_.mainThread(), auth_->refreshSession());
  desktop_.runFor(1s);
  desktop_.await(auth_->signIn("grace@example.org", "pw"));
  EXPECT_TRUE(desktop_.await(running.value()));
  desktop_.runFor(2s);
  EXPECT_EQ(tokenStore_.read("mac.refreshToken"), "refresh2");
}

}  // namespace
}  // namespace quillo
