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

TEST(Accounts, RefusalsUseTheWordsThatTheClientLooksFor) {
  RunningService service;
  ASSERT_EQ(service.signUp("ada@example.com").status, 200);
  EXPECT_EQ(service.signIn("nobody@example.com").status, 400);
  EXPECT_EQ(service.signIn("ada@example.com", "wrong horse").at("error_description"),
            "Invalid login credentials");
  EXPECT_EQ(service.signUp("ADA@example.com", "another password").at("error_description"),
            "User already registered");
  EXPECT_EQ(service.signUp("ben@example.com", "short").status, 422);
  EXPECT_EQ(service.signUp("a b@example").status, 400);
  // A guest's key is its own device's.
  EXPECT_EQ(service.usage({"mx_qd_a", "qd_b", ""}).status, 401);
}

TEST(Accounts, SessionServesForAnHourAndARefreshTokenOnce) {
  RunningService service;
  const Answer first = service.signUp("Ada@Example.com ");
  ASSERT_EQ(first.status, 200) << first.text;
  EXPECT_EQ(first.body["expires_in"], 3600);
  const Identity ada = service.identity(first, "qd_ada");
  service.clock.advance(seconds(3599));
  EXPECT_EQ(service.usage(ada).body["userId"], first.body["user"]["id"]);
  service.clock.advance(seconds(1));
  EXPECT_EQ(service.usage(ada).at("message"), "Please sign in again.");
  EXPECT_EQ(profile(service, first).status, 401);

  const Answer elsewhere = service.signIn("ada@example.com");
  const Answer second = service.refresh(first.at("refresh_token"));
  EXPECT_EQ(profile(service, second).body["user_metadata"]["full_name"], "Ada Byron");
  // A token that comes back ends its whole sign-in, but not the one on another machine.
  EXPECT_EQ(service.refresh(first.at("refresh_token")).status, 400);
  EXPECT_EQ(service.refresh(second.at("refresh_token")).status, 400);
  EXPECT_EQ(profile(service, second).status, 401);
  EXPECT_EQ(service.refresh(elsewhere.at("refresh_token")).status, 200);
}

TEST(Accounts, UnconfirmedSignUpWaitsForACodeOfTenMinutesAndFiveTries) {
  RunningService service(withConfirmation());
  EXPECT_FALSE(service.signUp("ada@example.com").body.contains("access_token"));
  EXPECT_EQ(service.mails().front().to, "ada@example.com");
  EXPECT_EQ(service.signIn("ada@example.com").at("error_description"), "Email not confirmed");
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
  EXPECT_EQ(verify(service, "recovery", good).status, 403);
  EXPECT_EQ(profile(service, verify(service, "signup", good)).status, 200);
  EXPECT_EQ(verify(service, "signup", good).status, 403);
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
  EXPECT_EQ(service.put("/auth/v1/user", {{"password", "new password"}}, bearer).status, 200);
  EXPECT_EQ(service.signIn("ada@example.com", "new password").status, 200);
  // Whoever was signed in with the old password is out.
  EXPECT_EQ(profile(service, stolen).status, 401);
  EXPECT_EQ(service.refresh(stolen.at("refresh_token")).status, 400);
  EXPECT_EQ(profile(service, session).status, 200);
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

}  // namespace
}  // namespace quillo::service
