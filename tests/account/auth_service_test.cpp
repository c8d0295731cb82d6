// What the scenarios of the account cannot see of a session that begins or ends.
#include "account/auth_service.h"

#include "account_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

using AuthServiceTest = AccountTest;

TEST_F(AuthServiceTest, SigningInStoresTheSessionAndOpensTheUsersHistory) {
  launch();
  answer(tokenPath, 200, session("access1", "refresh1", "1800.0"));
  EXPECT_EQ(desktop_.await(auth_->signIn("ADA@example.org", "p\"w")),
            MacAuthResult::success(asItStands("ada@example.org")));
  EXPECT_EQ(refreshes().back().body, R"({"email":"ADA@example.org","password":"p\"w"})");
  EXPECT_EQ(defaults().text("mac.apiKey"), "access1");
  EXPECT_EQ(defaults().number("mac.tokenExpiresAt"), secondsNow() + 1800);
  EXPECT_EQ(history_->currentKey(), "user-u1");
  desktop_.runTurns();
  EXPECT_EQ(state_->plan.get(), "pro");
}

TEST_F(AuthServiceTest, ASessionNeedsNeitherALifetimeNorAUserAndTakesOldCopiesAway) {
  launchSignedIn();
  defaults().setText("mac.accessToken", "kept when the keychain refused");
  answer("/signup", 200, R"({"access_token":"access1"})");
  EXPECT_EQ(desktop_.await(auth_->signUp("a@b.c", "pw", "")),
            MacAuthResult::success(asItStands("a@b.c")));
  EXPECT_TRUE(auth_->isLoggedIn());
  EXPECT_FALSE(defaults().contains("mac.accessToken"));
  EXPECT_EQ(tokenStore_.read("mac.accessToken"), "access1");
  EXPECT_EQ(defaults().number("mac.tokenExpiresAt"), secondsNow() + 3600);
  EXPECT_EQ(history_->currentKey(), "device-qd_1_a");  // not that of the user before
}

TEST_F(AuthServiceTest, WhatComesAfterTheSignOutIsNobodys) {
  launchSignedIn();
  for (int i = 0; i < 2; ++i) answer("/user", 200, R"({"email":"ada@example.org"})", 2s);
  const auto late = start(desktop_.mainThread(), auth_->fetchProfile());
  const auto name = start(desktop_.mainThread(), auth_->updateFullName("Ada"));
  desktop_.runFor(1s);
  auth_->signOut();
  desktop_.await(late.value());
  desktop_.await(name.value());
  EXPECT_FALSE(auth_->userEmail.get() || auth_->fullName.get());
}

}  // namespace
}  // namespace quillo
