// The user's account, and the session that is kept alive with the account service.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "account/account_client.h"
#include "account/auth_records.h"
#include "account/auth_result.h"
#include "account/session_tokens.h"
#include "api/backend.h"
#include "api/session_authority.h"
#include "base/log.h"
#include "base/published.h"
#include "base/single_flight.h"
#include "base/task.h"
#include "platform/clock.h"
#include "platform/url_session.h"
#include "platform/user_defaults.h"
#include "state/account_state.h"
#include "state/history_store.h"
#include "state/token_store.h"

namespace quillo {

// Main thread only. A session lasts until the server refuses it or the user signs out: losing the
// network, or the access token's expiry alone, does not end it. While it lasts, either the refresh
// timer or a refresh is pending.
class MacAuthService final : public SessionAuthority {
 public:
  // Restores the session of the last run; a refresh that is due begins in a later turn.
  MacAuthService(MainThread& mainThread, URLSessions& sessions, UserDefaults& defaults,
                 MacKeychainTokenStore& tokenStore, AccountState& account, MacHistoryStore& history,
                 Clock& clock, Log& log, Backend backend);

  // --- Published ---

  bool isLoggedIn() const override { return isLoggedIn_; }
  [[nodiscard]] Subscription observeIsLoggedIn(Published<bool>::Observer observer) const {
    return isLoggedIn_.observe(std::move(observer));
  }
  Published<std::optional<std::string>> userEmail;
  Published<std::optional<std::string>> fullName;
  Published<std::optional<std::string>> avatarURL;
  Published<bool> isLoading;              // an interactive operation runs
  Published<std::optional<Words>> error;  // why the last one failed

  // --- Interactive operations. They never throw; the result's text is for the user. ---

  Task<MacAuthResult> signIn(std::string email, std::string password);
  Task<MacAuthResult> signUp(std::string email, std::string password,
                             std::optional<std::string> name);
  Task<MacAuthResult> verifySignup(std::string email, std::string code);
  Task<MacAuthResult> resendConfirmation(std::string email);
  Task<MacAuthResult> sendPasswordReset(std::string email);
  // Sets the new password without signing in.
  Task<MacAuthResult> verifyRecovery(std::string email, std::string code, std::string newPassword);
  Task<MacAuthResult> changePassword(std::string newPassword);
  Task<MacAuthResult> updateFullName(std::string name);
  Task<MacAuthResult> deleteAccount();

  // --- Profile and session ---

  // Failures are silent.
  Task<> fetchProfile();
  // On this machine; the server is not told.
  void signOut();

  bool needsRefresh() const override { return isTokenExpired(); }
  // One request, however many ask. False when there is no fresh session afterwards; then either
  // the user is signed out or another attempt is planned. A cancelled caller waits no longer.
  Task<bool> refreshSession() override;

 private:
  Task<MacAuthResult> interactively(Task<MacAuthResult> operation);
  Task<MacAuthResult> performSignIn(std::string email, std::string password);
  Task<MacAuthResult> performSignUp(std::string email, std::string password,
                                    std::optional<std::string> name);
  Task<MacAuthResult> performVerifySignup(std::string email, std::string code);
  Task<MacAuthResult> performVerifyRecovery(std::string email, std::string code,
                                            std::string newPassword);
  Task<MacAuthResult> performChangePassword(std::string newPassword);
  Task<MacAuthResult> performUpdateFullName(std::string name);
  Task<MacAuthResult> performDeleteAccount();
  Task<MacAuthResult> requestMail(AccountRequest request, std::string email, Words refusal);

  Task<HTTPResponse> updateUser(std::string accessToken, Json body);

  Task<> resumeSession();
  void beginSession(const SupabaseAuthResponse& response);
  void storeSession(const SupabaseAuthResponse& response);
  void takeProfile(const SupabaseUserProfile& profile);
  void publishApiKey();
  // The head of each authenticated operation.
  Task<std::optional<std::string>> ensureFreshToken();

  Task<bool> performRefresh();
  bool takeRefreshReply(const HTTPResponse& reply);
  void retryAfter(const std::exception_ptr& failure);

  std::optional<std::string> userId() const;
  bool isStillSignedIn(const std::optional<std::string>& user) const;

  double secondsNow() const;
  double tokenExpiresAt() const;  // seconds since 1970; 0 for never known
  bool isTokenExpired() const;
  void scheduleRefresh();
  void refreshIn(Duration delay);

  MainThread& mainThread_;
  UserDefaults& defaults_;
  AccountState& account_;
  MacHistoryStore& history_;
  Clock& clock_;
  Log& log_;
  AccountClient client_;
  SessionTokens tokens_;
  Published<bool> isLoggedIn_;
  Timer refreshTimer_;
  SingleFlight<bool> inFlightRefresh_;
};

}  // namespace quillo
