#include "account/auth_service.h"

#include <algorithm>

#include "account/auth_error_texts.h"
#include "api/api_error.h"
#include "api/records.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr const char* userIdKey = "mac.userId";
constexpr const char* userEmailKey = "mac.userEmail";
constexpr const char* tokenExpiresAtKey = "mac.tokenExpiresAt";
constexpr const char* apiKeyKey = "mac.apiKey";

constexpr double defaultLifetime = 3600;          // seconds, when the server names none
constexpr double countsAsExpired = 60;            // seconds before the expiry
constexpr double refreshedAhead = 120;            // seconds before the expiry
constexpr double soonestRefresh = 30;             // seconds
constexpr double latestRefresh = 86'400 * 365.0;  // seconds; a server may name any lifetime
constexpr Duration retryDelay = 60s;

MacAuthResult refusal(const HTTPResponse& reply) {
  return MacAuthResult::error(serverErrorText(reply.body));
}

std::string addressOf(const SupabaseAuthResponse& session, std::string typed) {
  return session.user ? session.user->email.value_or(std::move(typed)) : std::move(typed);
}

AccountRequest post(std::string path, Json body) {
  return {.method = "POST", .path = std::move(path), .body = std::move(body)};
}

}  // namespace

// --- Start ---

MacAuthService::MacAuthService(MainThread& mainThread, URLSessions& sessions,
                               UserDefaults& defaults, MacKeychainTokenStore& tokenStore,
                               AccountState& account, MacHistoryStore& history, Clock& clock,
                               Log& log, Backend backend)
    : mainThread_(mainThread),
      defaults_(defaults),
      account_(account),
      history_(history),
      clock_(clock),
      log_(log),
      client_(sessions, std::move(backend)),
      tokens_(tokenStore, defaults),
      inFlightRefresh_(mainThread) {
  const bool hasAccess = tokens_.read(TokenKind::access).has_value();
  const bool hasRefresh = tokens_.read(TokenKind::refresh).has_value();
  isLoggedIn_ = hasRefresh || (hasAccess && !isTokenExpired());
  userEmail = defaults_.text(userEmailKey);
  if (hasAccess) publishApiKey();
  if (isLoggedIn_) start(mainThread_, resumeSession());
}

Task<> MacAuthService::resumeSession() {
  if (tokens_.read(TokenKind::access) && !isTokenExpired()) {
    scheduleRefresh();
    start(mainThread_, account_.refreshUsage());
  } else {
    co_await refreshSession();
  }
}

// --- Interactive operations ---

Task<MacAuthResult> MacAuthService::interactively(Task<MacAuthResult> operation) {
  isLoading = true;
  error = std::nullopt;
  MacAuthResult result;
  try {
    result = co_await std::move(operation);
  } catch (...) {
    result = MacAuthResult::error(transportErrorText(std::current_exception()));
  }
  isLoading = false;
  if (result.kind == MacAuthResult::Kind::error) error = result.text;
  co_return result;
}

Task<MacAuthResult> MacAuthService::signIn(std::string email, std::string password) {
  return interactively(performSignIn(std::move(email), std::move(password)));
}

Task<MacAuthResult> MacAuthService::performSignIn(std::string email, std::string password) {
  const HTTPResponse reply = co_await client_.send(post(
      "/auth/v1/token?grant_type=password", {{"email", email}, {"password", std::move(password)}}));
  if (reply.status != 200) co_return refusal(reply);
  const auto session = decodeRecord<SupabaseAuthResponse>(reply.body);
  beginSession(session);
  co_return MacAuthResult::success(asItStands(addressOf(session, std::move(email))));
}

Task<MacAuthResult> MacAuthService::signUp(std::string email, std::string password,
                                           std::optional<std::string> name) {
  return interactively(performSignUp(std::move(email), std::move(password), std::move(name)));
}

Task<MacAuthResult> MacAuthService::performSignUp(std::string email, std::string password,
                                                  std::optional<std::string> name) {
  Json body = {{"email", email}, {"password", std::move(password)}};
  if (name && !name->empty()) body["data"] = {{"full_name", *name}};
  const HTTPResponse reply = co_await client_.send(post("/auth/v1/signup", std::move(body)));
  if (reply.status != 200) co_return refusal(reply);
  const auto session = decodeRecord<SupabaseAuthResponse>(reply.body);
  if (!session.hasAccessToken())
    co_return MacAuthResult::needsConfirmation(words("Check your email to confirm your account."));
  beginSession(session);
  co_return MacAuthResult::success(asItStands(addressOf(session, std::move(email))));
}

Task<MacAuthResult> MacAuthService::verifySignup(std::string email, std::string code) {
  return interactively(performVerifySignup(std::move(email), std::move(code)));
}

Task<MacAuthResult> MacAuthService::performVerifySignup(std::string email, std::string code) {
  const HTTPResponse reply = co_await client_.send(
      post("/auth/v1/verify", {{"email", email}, {"token", std::move(code)}, {"type", "signup"}}));
  if (reply.status != 200) co_return refusal(reply);
  const auto session = decodeRecord<SupabaseAuthResponse>(reply.body);
  if (!session.hasTokens()) co_return MacAuthResult::error(words("Verification failed."));
  beginSession(session);
  co_return MacAuthResult::success(asItStands(addressOf(session, std::move(email))));
}

Task<MacAuthResult> MacAuthService::resendConfirmation(std::string email) {
  AccountRequest request = post("/auth/v1/resend", {{"email", email}, {"type", "signup"}});
  return interactively(
      requestMail(std::move(request), std::move(email), words("Failed to resend email.")));
}

Task<MacAuthResult> MacAuthService::sendPasswordReset(std::string email) {
  AccountRequest request = post("/auth/v1/recover", {{"email", email}});
  return interactively(
      requestMail(std::move(request), std::move(email), words("Failed to send reset email.")));
}

Task<MacAuthResult> MacAuthService::requestMail(AccountRequest request, std::string email,
                                                Words refusalText) {
  const HTTPResponse reply = co_await client_.send(std::move(request));
  co_return reply.status == 200 ? MacAuthResult::success(asItStands(std::move(email)))
                                : MacAuthResult::error(std::move(refusalText));
}

Task<MacAuthResult> MacAuthService::verifyRecovery(std::string email, std::string code,
                                                   std::string newPassword) {
  return interactively(
      performVerifyRecovery(std::move(email), std::move(code), std::move(newPassword)));
}

Task<MacAuthResult> MacAuthService::performVerifyRecovery(std::string email, std::string code,
                                                          std::string newPassword) {
  const HTTPResponse verified = co_await client_.send(
      post("/auth/v1/verify",
           {{"email", std::move(email)}, {"token", std::move(code)}, {"type", "recovery"}}));
  if (verified.status != 200) co_return MacAuthResult::error(words("Invalid or expired code."));
  const auto session = decodeRecord<SupabaseAuthResponse>(verified.body);
  if (!session.hasAccessToken())
    co_return MacAuthResult::error(words("Invalid verification response."));
  const HTTPResponse saved =
      co_await updateUser(*session.accessToken, {{"password", std::move(newPassword)}});
  co_return saved.status == 200 ? MacAuthResult::success(words("Password updated successfully."))
                                : MacAuthResult::error(words("Failed to update password."));
}

Task<MacAuthResult> MacAuthService::changePassword(std::string newPassword) {
  return interactively(performChangePassword(std::move(newPassword)));
}

Task<MacAuthResult> MacAuthService::performChangePassword(std::string newPassword) {
  const auto accessToken = co_await ensureFreshToken();
  if (!accessToken)
    co_return MacAuthResult::error(words("Please sign in again to change your password."));
  const HTTPResponse reply =
      co_await updateUser(*accessToken, {{"password", std::move(newPassword)}});
  co_return reply.status == 200 ? MacAuthResult::success(words("Password changed."))
                                : refusal(reply);
}

Task<MacAuthResult> MacAuthService::updateFullName(std::string name) {
  return interactively(performUpdateFullName(std::move(name)));
}

Task<MacAuthResult> MacAuthService::performUpdateFullName(std::string name) {
  const auto accessToken = co_await ensureFreshToken();
  if (!accessToken) co_return MacAuthResult::error(signInAgain);
  const auto user = userId();
  try {
    co_await updateUser(*accessToken, {{"data", {{"full_name", name}}}});
  } catch (const std::exception&) {
    // The name counts as saved whatever comes back: the next profile shows what the server has.
  }
  if (isStillSignedIn(user)) fullName = std::move(name);
  co_return MacAuthResult::success(words("Profile saved."));
}

Task<HTTPResponse> MacAuthService::updateUser(std::string accessToken, Json body) {
  return client_.send({.method = "PUT",
                       .path = "/auth/v1/user",
                       .body = std::move(body),
                       .accessToken = std::move(accessToken)});
}

Task<MacAuthResult> MacAuthService::deleteAccount() {
  return interactively(performDeleteAccount());
}

Task<MacAuthResult> MacAuthService::performDeleteAccount() {
  const auto accessToken = co_await ensureFreshToken();
  if (!accessToken)
    co_return MacAuthResult::error(words("Please sign in again to delete your account."));
  const auto user = userId();
  const HTTPResponse reply = co_await client_.send(
      {.method = "POST", .path = "/functions/v1/delete-user", .accessToken = *accessToken});
  if (reply.status == 403)
    co_return MacAuthResult::error(
        words("For your security, sign out and sign in again, then delete your account."));
  if (reply.status != 200) co_return refusal(reply);
  if (isStillSignedIn(user)) signOut();
  co_return MacAuthResult::success(words("Your account has been deleted."));
}

// --- Profile ---

Task<> MacAuthService::fetchProfile() {
  const auto accessToken = co_await ensureFreshToken();
  if (!accessToken) co_return;
  const auto user = userId();
  try {
    const HTTPResponse reply = co_await client_.send(
        {.method = "GET", .path = "/auth/v1/user", .accessToken = *accessToken});
    // The status does not count: an error reads as a profile without a name.
    const auto profile = decodeRecord<SupabaseUserProfile>(reply.body);
    if (isStillSignedIn(user)) takeProfile(profile);
  } catch (const std::exception&) {
    // The profile is only for show; what is shown stays.
  }
}

void MacAuthService::takeProfile(const SupabaseUserProfile& profile) {
  const auto metadata = profile.userMetadata.value_or(SupabaseUserProfile::Metadata());
  if (profile.email) userEmail = profile.email;
  fullName = metadata.fullName;
  avatarURL = metadata.avatarUrl;
}

// --- Session ---

// Whoever signs in may be another user: what a refresh brings belongs to the session before.
void MacAuthService::beginSession(const SupabaseAuthResponse& response) {
  inFlightRefresh_.cancelAndForget();
  storeSession(response);
}

void MacAuthService::storeSession(const SupabaseAuthResponse& response) {
  tokens_.save(TokenKind::access, response.accessToken);
  tokens_.save(TokenKind::refresh, response.refreshToken);

  if (response.user) {
    defaults_.setText(userIdKey, response.user->id);
  } else {
    defaults_.remove(userIdKey);
  }
  userEmail = response.user ? response.user->email : std::nullopt;
  if (userEmail.get()) {
    defaults_.setText(userEmailKey, *userEmail.get());
  } else {
    defaults_.remove(userEmailKey);
  }
  const double lifetime =
      response.expiresIn ? static_cast<double>(*response.expiresIn) : defaultLifetime;
  defaults_.setNumber(tokenExpiresAtKey, secondsNow() + lifetime);

  isLoggedIn_ = true;
  publishApiKey();
  start(mainThread_, account_.refreshUsage());
  history_.switchToCurrentKey();
  scheduleRefresh();
}

void MacAuthService::signOut() {
  tokens_.removeAll();
  defaults_.remove(userIdKey);
  userEmail = std::nullopt;
  defaults_.setNumber(tokenExpiresAtKey, 0);
  refreshTimer_ = {};
  inFlightRefresh_.cancelAndForget();
  isLoggedIn_ = false;
  fullName = std::nullopt;
  avatarURL = std::nullopt;
  defaults_.remove(userEmailKey);
  account_.clearAccountState();
}

// The dictation API knows the user by the access token.
void MacAuthService::publishApiKey() {
  if (const auto accessToken = tokens_.read(TokenKind::access)) {
    defaults_.setText(apiKeyKey, *accessToken);
  } else {
    defaults_.remove(apiKeyKey);
  }
}

Task<std::optional<std::string>> MacAuthService::ensureFreshToken() {
  if (isLoggedIn_ && isTokenExpired()) {
    const bool isFresh = co_await refreshSession();
    if (!isFresh) co_return std::nullopt;
  }
  co_return tokens_.read(TokenKind::access);
}

// --- Refresh ---

Task<bool> MacAuthService::refreshSession() {
  return inFlightRefresh_.join([this] { return performRefresh(); });
}

Task<bool> MacAuthService::performRefresh() {
  const auto refreshToken = tokens_.read(TokenKind::refresh);
  if (!refreshToken) {
    signOut();
    co_return false;
  }
  std::optional<HTTPResponse> reply;
  std::exception_ptr failure;
  try {
    reply = co_await client_.send(
        post("/auth/v1/token?grant_type=refresh_token", {{"refresh_token", *refreshToken}}));
  } catch (const InvalidResponseError&) {
    // No reply, and nothing to log: as with a status that says nothing about the session.
  } catch (...) {
    failure = std::current_exception();
  }
  // Signing in or out cancels the refresh: what came back belongs to a session that is over.
  if (co_await isCancelled()) co_return isLoggedIn_ && !isTokenExpired();

  if (reply) co_return takeRefreshReply(*reply);
  if (failure) {
    retryAfter(failure);
  } else {
    refreshIn(retryDelay);
  }
  co_return false;
}

bool MacAuthService::takeRefreshReply(const HTTPResponse& reply) {
  switch (reply.status) {
    case 200:
      try {
        storeSession(decodeRecord<SupabaseAuthResponse>(reply.body));
        return true;
      } catch (const DecodingError&) {
        retryAfter(std::current_exception());
        return false;
      }
    case 400:
    case 401:
    case 403:
      signOut();
      return false;
    default:
      refreshIn(retryDelay);
      return false;
  }
}

void MacAuthService::retryAfter(const std::exception_ptr& failure) {
  log_.log("auth", "refresh failed: " + describe(failure));
  refreshIn(retryDelay);
}

std::optional<std::string> MacAuthService::userId() const {
  return defaults_.text(userIdKey);
}

bool MacAuthService::isStillSignedIn(const std::optional<std::string>& user) const {
  return isLoggedIn_ && userId() == user;
}

double MacAuthService::secondsNow() const {
  return secondsSince1970(clock_.now());
}

double MacAuthService::tokenExpiresAt() const {
  return defaults_.number(tokenExpiresAtKey).value_or(0);
}

bool MacAuthService::isTokenExpired() const {
  return tokenExpiresAt() == 0 || tokenExpiresAt() - countsAsExpired < secondsNow();
}

void MacAuthService::scheduleRefresh() {
  const double wanted = tokenExpiresAt() - refreshedAhead - secondsNow();
  refreshIn(fromSeconds(std::clamp(wanted, soonestRefresh, latestRefresh)));
}

void MacAuthService::refreshIn(Duration delay) {
  refreshTimer_ = Timer(mainThread_, delay, [this] { start(mainThread_, refreshSession()); });
}

}  // namespace quillo
