#include "account/session_tokens.h"

namespace quillo {
namespace {

// The keychain account, and the key in the settings.
const char* nameOf(TokenKind kind) {
  return kind == TokenKind::access ? "mac.accessToken" : "mac.refreshToken";
}

}  // namespace

SessionTokens::SessionTokens(MacKeychainTokenStore& tokenStore, UserDefaults& defaults)
    : tokenStore_(tokenStore), defaults_(defaults) {
  moveIntoKeychain(TokenKind::access);
  moveIntoKeychain(TokenKind::refresh);
}

void SessionTokens::moveIntoKeychain(TokenKind kind) {
  if (tokenStore_.read(nameOf(kind))) return;
  const auto token = readFromSettings(kind);
  if (token && tokenStore_.save(*token, nameOf(kind))) defaults_.remove(nameOf(kind));
}

std::optional<std::string> SessionTokens::read(TokenKind kind) const {
  if (auto token = tokenStore_.read(nameOf(kind))) return token;
  return readFromSettings(kind);
}

std::optional<std::string> SessionTokens::readFromSettings(TokenKind kind) const {
  auto token = defaults_.text(nameOf(kind));
  return token && !token->empty() ? token : std::nullopt;
}

void SessionTokens::save(TokenKind kind, const std::optional<std::string>& token) {
  if (!token || token->empty()) return remove(kind);
  if (tokenStore_.save(*token, nameOf(kind))) {
    defaults_.remove(nameOf(kind));
  } else {
    defaults_.setText(nameOf(kind), *token);
  }
}

void SessionTokens::removeAll() {
  remove(TokenKind::access);
  remove(TokenKind::refresh);
}

void SessionTokens::remove(TokenKind kind) {
  tokenStore_.remove(nameOf(kind));
  defaults_.remove(nameOf(kind));
}

}  // namespace quillo
