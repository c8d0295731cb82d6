// The interactive operations: what they send, and what the user reads.
#include "account/auth_service.h"

#include "account_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class AuthServiceTest : public AccountTest {
 protected:
  // The result as "success: text"; the published state has to go along.
  std::string outcome(Task<MacAuthResult> operation) {
    const auto running = start(desktop_.mainThread(), std::move(operation));
    const MacAuthResult result = desktop_.await(running.value());
    EXPECT_FALSE(auth_->isLoading);
    const bool failed = result.kind == MacAuthResult::Kind::error;
    EXPECT_EQ(auth_->error.get(), failed ? std::optional(result.text) : std::nullopt);
    static const std::map<MacAuthResult::Kind, std::string> names = {
        {MacAuthResult::Kind::success, "success: "},
        {MacAuthResult::Kind::error, "error: "},
        {MacAuthResult::Kind::needsConfirmation, "needsConfirmation: "}};
    return names.at(result.kind) + result.text;
  }
  // The same when the server answers so.
  std::string outcome(const std::string& path, int status, const Bytes& body,
                      Task<MacAuthResult> operation) {
    answer(path, status, body);
    return outcome(std::move(operation));
  }
  Task<MacAuthResult> signIn() { return auth_->signIn("ada@example.org", "pw"); }
  std::string lastRequest() {
    const RecordedRequest& request = desktop_.network().requests().back();
    const auto bearer = request.header("Authorization");
    return request.method + " " + request.url.substr(std::string("https://service.test").size()) +
           " " + request.body + (bearer ? " " + *bearer : "");
  }
};

// --- Signing in and up ---

TEST_F(AuthServiceTest, SigningInStoresTheSessionAndOpensTheUsersHistory) {
  launch();
  answer(tokenPath, 200, session("access1", "refresh1", "1800.0"), 1s);
  auth_->error = "an older failure";
  const auto running = start(desktop_.mainThread(), auth_->signIn("ADA@example.org", "p\"w"));
  desktop_.runFor(500ms);
  EXPECT_TRUE(auth_->isLoading);
  EXPECT_FALSE(auth_->error.get());
  EXPECT_EQ(desktop_.await(running.value()), MacAuthResult::success("ada@example.org"));
  EXPECT_EQ(lastRequest(), R"(POST /auth/v1/token?grant_type=password )"
                           R"({"email":"ADA@example.org","password":"p\"w"})");
  EXPECT_TRUE(auth_->isLoggedIn());
  EXPECT_EQ(defaults().text("mac.apiKey"), "access1");
  EXPECT_EQ(defaults().number("mac.tokenExpiresAt"), secondsNow() + 1800);
  EXPECT_EQ(history_->currentKey(), "user-u1");
  desktop_.runTurns();
  EXPECT_EQ(state_->plan.get(), "pro");
}

TEST_F(AuthServiceTest, SigningInNeedsNeitherALifetimeNorAUserAndTakesOldCopiesAway) {
  launchSignedIn();
  defaults().setText("mac.accessToken", "kept when the keychain refused");
  EXPECT_EQ(outcome(tokenPath, 200, R"({"access_token":"access1"})", signIn()),
            "success: ada@example.org");
  EXPECT_FALSE(defaults().contains("mac.accessToken"));
  EXPECT_EQ(tokenStore_.read("mac.accessToken"), "access1");
  EXPECT_EQ(defaults().number("mac.tokenExpiresAt"), secondsNow() + 3600);
  EXPECT_EQ(history_->currentKey(), "device-qd_1_a");  // not that of the user before
}

TEST_F(AuthServiceTest, FailuresReadAsTheServerOrOurWordsSayThem) {
  launch();
  const std::vector<std::pair<Bytes, std::string>> refusals = {
      {R"({"error":"e","error_description":"Invalid login credentials"})",
       "Invalid email or password."},
      {R"({"error_description":"User already registered"})", "This email is already registered."},
      {R"({"error_description":"Locked","message":"m"})", "Locked"},
      {R"({"error":"e","msg":"s","message":"m"})", "m"},
      {R"({"error":"e","msg":"s","message":null})", "s"},
      {R"({"error":"e"})", "e"},
      {"{}", "Authentication failed."},
      {R"({"error":{"code":1}})", "Authentication failed."},
      {"<html>", "Authentication failed."}};
  for (const auto& [body, text] : refusals)
    EXPECT_EQ(outcome(tokenPath, 400, body, signIn()), "error: " + text) << body;

  const std::vector<std::pair<URLErrorCode, std::string>> losses = {
      {URLErrorCode::notConnectedToInternet, "No internet connection."},
      {URLErrorCode::networkConnectionLost, "Connection interrupted."},
      {URLErrorCode::serverCertificateUntrusted, "Connection problem."}};
  for (const auto& [code, text] : losses) {
    desktop_.network().fail(tokenPath, code);
    EXPECT_EQ(outcome(signIn()), "error: " + text);
  }
  desktop_.network().reply(tokenPath, NotHTTP{});
  EXPECT_EQ(outcome(signIn()), "error: Invalid response.");
  EXPECT_EQ(outcome(tokenPath, 200, "[]", signIn()),
            "error: Something went wrong. Please try again.");
  desktop_.network().reply(tokenPath, simulated::Stall{});
  const MonotonicTime began = desktop_.now();
  EXPECT_EQ(outcome(signIn()), "error: Request timed out.");
  EXPECT_EQ(desktop_.now() - began, 60s);
  EXPECT_FALSE(auth_->isLoggedIn());
}

// --- What is sent, and what is told ---

TEST_F(AuthServiceTest, WithoutASessionEachRequestBearsItsWordsAndEachReplyIsToldInOurs) {
  launch();
  const auto signUp = [this] { return auth_->signUp("a@b.c", "pw", "Ada"); };
  const auto signUpNameless = [this] { return auth_->signUp("a@b.c", "pw", ""); };
  const auto verify = [this] { return auth_->verifySignup("a@b.c", "123"); };
  const auto resend = [this] { return auth_->resendConfirmation("a@b.c"); };
  const auto reset = [this] { return auth_->sendPasswordReset("a@b.c"); };
  const auto recover = [this] { return auth_->verifyRecovery("a@b.c", "1", "new"); };
  const Bytes recovered = session("recovery", "r");
  answer("/user", 422);
  answer("/user", 200);
  const struct {
    std::function<Task<MacAuthResult>()> operation;
    const char* path;
    int status;
    Bytes reply;
    std::string told;
    std::string sent = {};  // looked at after a success
    bool signsIn = false;
  } exchanges[] = {
      {signUp, "/signup", 200, R"({"id":"u1"})",
       "needsConfirmation: Check your email to confirm your account.",
       R"(POST /auth/v1/signup {"email":"a@b.c","password":"pw","data":{"full_name":"Ada"}})"},
      {verify, "/verify", 403, R"({"msg":"Token has expired"})", "error: Token has expired"},
      {verify, "/verify", 200, "{}", "error: Verification failed."},
      {resend, "/resend", 429, R"({"msg":"slow"})", "error: Failed to resend email."},
      {resend, "/resend", 200, "", "success: a@b.c",
       R"(POST /auth/v1/resend {"email":"a@b.c","type":"signup"})"},
      {reset, "/recover", 500, "", "error: Failed to send reset email."},
      {reset, "/recover", 200, "", "success: a@b.c", R"(POST /auth/v1/recover {"email":"a@b.c"})"},
      {recover, "/verify", 400, "{}", "error: Invalid or expired code."},
      {recover, "/verify", 200, "{}", "error: Invalid verification response."},
      {recover, "/verify", 200, recovered, "error: Failed to update password."},
      {recover, "/verify", 200, recovered, "success: Password updated successfully.",
       R"(PUT /auth/v1/user {"password":"new"} Bearer recovery)"},
      {verify, "/verify", 200, R"({"access_token":"a","refresh_token":"r"})", "success: a@b.c",
       R"(POST /auth/v1/verify {"email":"a@b.c","token":"123","type":"signup"})", true},
      {signUpNameless, "/signup", 200, session("access1", "refresh1"), "success: ada@example.org",
       R"(POST /auth/v1/signup {"email":"a@b.c","password":"pw"})", true}};
  for (const auto& each : exchanges) {
    EXPECT_EQ(outcome(each.path, each.status, each.reply, each.operation()), each.told);
    if (!each.sent.empty()) EXPECT_EQ(lastRequest(), each.sent);
    EXPECT_EQ(auth_->isLoggedIn(), each.signsIn) << each.told;
    auth_->signOut();
  }
}

// --- With a session ---

TEST_F(AuthServiceTest, AnExpiringTokenIsRefreshedBeforeItIsUsed) {
  launchSignedIn(200);
  desktop_.runTurns();
  desktop_.clock().set(desktop_.clock().now() + 150s);  // 50 s are left
  answer(tokenPath, 200, session("access2", "refresh2"));
  EXPECT_EQ(outcome("/user", 200, "{}", auth_->changePassword("new")),
            "success: Password changed.");
  EXPECT_EQ(lastRequest(), R"(PUT /auth/v1/user {"password":"new"} Bearer access2)");
  EXPECT_EQ(outcome("/user", 422, R"({"msg":"Too short"})", auth_->changePassword("x")),
            "error: Too short");
}

TEST_F(AuthServiceTest, WithoutASessionEachOperationSaysWhy) {
  launch();
  EXPECT_EQ(outcome(auth_->updateFullName("Ada")), "error: Please sign in again.");
  EXPECT_EQ(outcome(auth_->changePassword("x")),
            "error: Please sign in again to change your password.");
  EXPECT_EQ(outcome(auth_->deleteAccount()), "error: Please sign in again to delete your account.");
  desktop_.await(auth_->fetchProfile());
  EXPECT_THAT(desktop_.network().requests(), IsEmpty());

  launchSignedIn(30);  // which cannot be refreshed
  answer(tokenPath, 500);
  desktop_.runTurns();
  EXPECT_EQ(outcome(tokenPath, 500, "", auth_->updateFullName("Ada")),
            "error: Please sign in again.");
  EXPECT_TRUE(auth_->isLoggedIn());
}

TEST_F(AuthServiceTest, TheProfileFollowsTheServerAndSavingANameIsTakenAtItsWord) {
  launchSignedIn();
  const auto fetch = [this](int status, const Bytes& body) {
    answer("/user", status, body);
    desktop_.await(auth_->fetchProfile());
  };
  fetch(200, R"({"email":"new@example.org",
                 "user_metadata":{"full_name":"Ada L","avatar_url":"https://a/b"}})");
  EXPECT_EQ(lastRequest(), "GET /auth/v1/user  Bearer access1");
  EXPECT_THAT(desktop_.network().requests().back().headers,
              ElementsAre(Pair("apikey", "anonymous"), Pair("Authorization", "Bearer access1")));
  EXPECT_EQ(auth_->userEmail.get(), "new@example.org");
  EXPECT_EQ(auth_->avatarURL.get(), "https://a/b");
  fetch(200, "<html>");
  EXPECT_EQ(auth_->fullName.get(), "Ada L");
  fetch(500, R"({"msg":"down"})");
  EXPECT_FALSE(auth_->fullName.get() || auth_->avatarURL.get());
  EXPECT_EQ(auth_->userEmail.get(), "new@example.org");

  desktop_.network().fail("/user", URLErrorCode::networkConnectionLost);
  EXPECT_EQ(outcome(auth_->updateFullName("Ada")), "success: Profile saved.");
  EXPECT_EQ(lastRequest(), R"(PUT /auth/v1/user {"data":{"full_name":"Ada"}} Bearer access1)");
  EXPECT_EQ(auth_->fullName.get(), "Ada");

  answer("/user", 200, R"({"email":"ada@example.org"})", 2s);
  const auto late = start(desktop_.mainThread(), auth_->fetchProfile());
  desktop_.runFor(1s);
  auth_->signOut();
  desktop_.await(late.value());
  EXPECT_FALSE(auth_->userEmail.get());
}

TEST_F(AuthServiceTest, DeletingTheAccountSignsOutUnlessItIsRefused) {
  launchSignedIn();
  const auto erase = [this] { return auth_->deleteAccount(); };
  EXPECT_EQ(outcome("/delete-user", 403, R"({"error":"reauthenticate"})", erase()),
            "error: For your security, sign out and sign in again, then delete your account.");
  EXPECT_EQ(outcome("/delete-user", 500, R"({"error":"later"})", erase()), "error: later");
  EXPECT_TRUE(auth_->isLoggedIn());
  EXPECT_EQ(outcome("/delete-user", 200, "", erase()), "success: Your account has been deleted.");
  EXPECT_EQ(lastRequest(), "POST /functions/v1/delete-user  Bearer access1");
  EXPECT_FALSE(auth_->isLoggedIn());
}

}  // namespace
}  // namespace quillo
