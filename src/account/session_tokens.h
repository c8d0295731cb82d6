// The two tokens of the user's session.
#pragma once

#include <optional>
#include <string>

#include "platform/user_defaults.h"
#include "state/token_store.h"

namespace quillo {

enum class TokenKind { access, refresh };

// In the keychain; in the settings while the keychain refuses. Main thread only.
class SessionTokens {
 public:
  // Moves tokens that lie in the settings into the keychain, as far as it takes them.
  SessionTokens(MacKeychainTokenStore& tokenStore, UserDefaults& defaults);

  // Never an empty text.
  std::optional<std::string> read(TokenKind kind) const;
  // An empty or absent token is removed.
  void save(TokenKind kind, const std::optional<std::string>& token);
  void removeAll();

 private:
  void moveIntoKeychain(TokenKind kind);
  void remove(TokenKind kind);
  std::optional<std::string> readFromSettings(TokenKind kind) const;

  MacKeychainTokenStore& tokenStore_;
  UserDefaults& defaults_;
};

}  // namespace quillo
