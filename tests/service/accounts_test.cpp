#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "service/running_service.h"

namespace quillo::service {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

ServiceOptions withConfirmation() {
  ServiceOptions options = testOptions();
  options.accounts.confirmation = EmailConfirmation::demanded;
  return options;
}

// Another code than `code`.
std::string wrong(const std::string& code) {
  return code == "000000" ? "000001" : "000000";
}

Answer verify(RunningService& service, const char* type, const std::string& code) {
  return service.post("/auth/v1/verify",
                      {{"email", "ada@example.com"}, {"token", code}, {"type", type}});
}

Answer profile(RunningService& service, const Answer& session) {
  return service.get("/auth/v1/user", RunningService::bearer(session.at("access_token")));
}

TEST(Accounts, SignUpOpensASessionWithTheFieldsThatTheClientReads) {
  RunningService service;
  const Answer session = service.signUp("Ada@Example.com ");
  ASSERT_EQ(session.status, 200) << session.text;
  EXPECT_EQ(session.at("token_type"), "bearer");
  EXPECT_EQ(session.body["expires_in"], 3600);
  EXPECT_EQ(session.body["user"]["email"], "ada@example.com");
  EXPECT_EQ(session.body["user"]["created_at"], "2026-03-04T09:15:02Z");

  const Answer user = profile(service, session);
  EXPECT_EQ(user.status, 200);
  EXPECT_EQ(user.body["user_metadata"]["full_name"], "Ada Byron");
  EXPECT_EQ(service.usage(service.identity(session, "qd_ada")).body["userId"],
            session.body["user"]["id"]);
}

TEST(Accounts, RefusalsUseTheWordsThatTheClientLooksFor) {
  RunningService service;
  ASSERT_EQ(service.signUp("ada@example.com").status, 200);

  for (const Answer& refused :
       {service.signIn("ada@example.com", "wrong horse"), service.signIn("nobody@example.com")}) {
    EXPECT_EQ(refused.status, 400);
    EXPECT_EQ(refused.at("error_description"), "Invalid login credentials");
  }
  const Answer again = service.signUp("ADA@example.com", "another password");
  EXPECT_EQ(again.status, 422);
  EXPECT_EQ(again.at("error_description"), "User already registered");

  EXPECT_EQ(service.signUp("ben@example.com", "short").status, 422);
  for (const char* address : {"", "ada", "@example.com", "ada@", "a da@example.com", "a@b@c"})
    EXPECT_EQ(service.signUp(address).status, 400) << address;
  EXPECT_EQ(service.post("/auth/v1/token?grant_type=id_token", {{"id_token", "x"}}).at("error"),
            "unsupported_grant_type");
}

TEST(Accounts, AccessTokenServesForAnHourAndARefreshRenewsIt) {
  RunningService service;
  const Answer first = service.signUp("ada@example.com");
  const Identity ada = service.identity(first, "qd_ada");
  service.clock.advance(seconds(3599));
  EXPECT_EQ(service.usage(ada).status, 200);
  service.clock.advance(seconds(1));
  const Answer expired = service.usage(ada);
  EXPECT_EQ(expired.status, 401);
  EXPECT_EQ(expired.at("message"), "Please sign in again.");
  EXPECT_EQ(profile(service, first).status, 401);

  const Answer second = service.refresh(first.at("refresh_token"));
  ASSERT_EQ(second.status, 200);
  EXPECT_EQ(service.usage(service.identity(second, "qd_ada")).status, 200);
}

TEST(Accounts, RefreshTokenThatComesBackEndsItsWholeSignIn) {
  RunningService service;
  const Answer first = service.signUp("ada@example.com");
  const Answer elsewhere = service.signIn("ada@example.com");
  const Answer second = service.refresh(first.at("refresh_token"));
  ASSERT_EQ(second.status, 200);
  EXPECT_NE(second.at("refresh_token"), first.at("refresh_token"));

  EXPECT_EQ(service.refresh(first.at("refresh_token")).status, 400);
  EXPECT_EQ(service.refresh(second.at("refresh_token")).status, 400);
  EXPECT_EQ(profile(service, second).status, 401);
  // A sign-in on another machine is a family of its own.
  EXPECT_EQ(service.refresh(elsewhere.at("refresh_token")).status, 200);
  EXPECT_EQ(service.refresh("made up").status, 400);
}

TEST(Accounts, UnconfirmedSignUpWaitsForItsCode) {
  RunningService service(withConfirmation());
  const Answer signUp = service.signUp("ada@example.com");
  EXPECT_EQ(signUp.status, 200);
  EXPECT_FALSE(signUp.body.contains("access_token"));
  ASSERT_EQ(service.mails().size(), 1u);
  EXPECT_EQ(service.mails().front().to, "ada@example.com");
  const std::string code = service.lastCode();
  EXPECT_EQ(code.size(), 6u);

  EXPECT_EQ(service.signIn("ada@example.com").at("error_description"), "Email not confirmed");
  EXPECT_EQ(verify(service, "recovery", code).status, 403);
  const Answer confirmed = verify(service, "signup", code);
  EXPECT_EQ(confirmed.status, 200);
  EXPECT_EQ(profile(service, confirmed).status, 200);
  EXPECT_EQ(service.signIn("ada@example.com").status, 200);
  EXPECT_EQ(verify(service, "signup", code).status, 403);
}

TEST(Accounts, CodeIsGoodForTenMinutesAndFiveTries) {
  RunningService service(withConfirmation());
  service.signUp("ada@example.com");
  const std::string late = service.lastCode();
  service.clock.advance(minutes(10));
  EXPECT_EQ(verify(service, "signup", late).status, 403);

  const Json address{{"email", "ada@example.com"}, {"type", "signup"}};
  EXPECT_EQ(service.post("/auth/v1/resend", address).status, 200);
  const std::string guessed = service.lastCode();
  for (int i = 0; i < 5; ++i) EXPECT_EQ(verify(service, "signup", wrong(guessed)).status, 403);
  EXPECT_EQ(verify(service, "signup", guessed).status, 403);

  EXPECT_EQ(service.post("/auth/v1/resend", address).status, 200);
  const std::string good = service.lastCode();
  EXPECT_EQ(verify(service, "signup", wrong(good)).status, 403);
  EXPECT_EQ(verify(service, "signup", good).status, 200);
  // Confirmed accounts and strangers get no mail, and no different answer.
  const std::size_t sent = service.mails().size();
  EXPECT_EQ(service.post("/auth/v1/resend", address).status, 200);
  EXPECT_EQ(service.post("/auth/v1/recover", {{"email", "nobody@example.com"}}).status, 200);
  EXPECT_EQ(service.mails().size(), sent);
}

TEST(Accounts, RecoveryCodeOpensASessionThatSetsANewPassword) {
  RunningService service;
  const Answer stolen = service.signUp("ada@example.com");
  EXPECT_EQ(service.post("/auth/v1/recover", {{"email", "ada@example.com"}}).status, 200);
  const Answer session = verify(service, "recovery", service.lastCode());
  ASSERT_EQ(session.status, 200);

  const auto bearer = RunningService::bearer(session.at("access_token"));
  EXPECT_EQ(service.put("/auth/v1/user", {{"password", "short"}}, bearer).status, 422);
  EXPECT_EQ(service.put("/auth/v1/user", {{"password", "new password"}}, bearer).status, 200);
  EXPECT_EQ(service.signIn("ada@example.com").status, 400);
  EXPECT_EQ(service.signIn("ada@example.com", "new password").status, 200);
  // Whoever was signed in with the old password is out.
  EXPECT_EQ(profile(service, stolen).status, 401);
  EXPECT_EQ(service.refresh(stolen.at("refresh_token")).status, 400);
  EXPECT_EQ(profile(service, session).status, 200);
}

TEST(Accounts, ProfileNameIsChangedAlone) {
  RunningService service;
  const Answer session = service.signUp("ada@example.com");
  const auto bearer = RunningService::bearer(session.at("access_token"));
  const Json change{{"data", {{"full_name", "Ada Lovelace"}}}};
  EXPECT_EQ(service.put("/auth/v1/user", change, bearer).status, 200);
  EXPECT_EQ(profile(service, session).body["user_metadata"]["full_name"], "Ada Lovelace");
  EXPECT_EQ(service.signIn("ada@example.com").status, 200);
  EXPECT_EQ(service.put("/auth/v1/user", change).status, 401);
}

TEST(Accounts, DeletionWantsARecentSignIn) {
  RunningService service;
  const Answer old = service.signUp("ada@example.com");
  service.clock.advance(minutes(11));
  // A refresh does not prove who sits there.
  const Answer refreshed = service.refresh(old.at("refresh_token"));
  const auto remove = [&](const Answer& session) {
    return service.post("/functions/v1/delete-user", Json::object(),
                        RunningService::bearer(session.at("access_token")));
  };
  EXPECT_EQ(remove(refreshed).status, 403);
  const Answer recent = service.signIn("ada@example.com");
  EXPECT_EQ(remove(recent).status, 200);
  EXPECT_EQ(remove(recent).status, 401);
  EXPECT_EQ(service.refresh(refreshed.at("refresh_token")).status, 400);
  EXPECT_EQ(service.signIn("ada@example.com").status, 400);
  EXPECT_EQ(service.signUp("ada@example.com").status, 200);
}

TEST(Accounts, SessionsOutliveTheServiceAndAreKeptAsDigests) {
  const auto folder = std::filesystem::temp_directory_path() /
                      ("quillo-service-test-" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  ServiceOptions options = testOptions();
  options.database = (folder / "service.sqlite").string();
  std::string refreshToken;
  {
    RunningService service(options);
    refreshToken = service.signUp("ada@example.com").at("refresh_token");
  }
  std::string stored;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    stored.append(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  EXPECT_NE(stored.find("ada@example.com"), std::string::npos);
  EXPECT_EQ(stored.find(refreshToken), std::string::npos);
  EXPECT_EQ(stored.find("correct horse"), std::string::npos);
  {
    RunningService service(options);
    EXPECT_EQ(service.refresh(refreshToken).status, 200);
  }
  std::filesystem::remove_all(folder);
}

TEST(Callers, AreWhoTheirHeadersSay) {
  RunningService service;
  const Answer session = service.signUp("ada@example.com");
  EXPECT_EQ(service.usage(guest("qd_a")).body["isGuest"], true);
  EXPECT_EQ(service.usage(service.identity(session, "qd_a")).body["isGuest"], false);
  // A guest's key is its own device's.
  EXPECT_EQ(service.usage({"mx_qd_a", "qd_b", ""}).status, 401);
  EXPECT_EQ(service.usage({"made up", "qd_b", ""}).status, 401);
  EXPECT_EQ(service.usage({"mx_", "", ""}).status, 400);
  EXPECT_EQ(service.get("/functions/v1/get-usage").status, 400);
}

}  // namespace
}  // namespace quillo::service
