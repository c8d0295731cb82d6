// Sign-ins and their tokens. A sign-in is a family of access and refresh tokens: each refresh
// token serves once, and one that comes back a second time was stolen by somebody, so its whole
// family ends (RFC 9700, section 4.14).
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "service/clock.h"
#include "service/database.h"

namespace quillo::service {

struct Tokens {
  std::string access;
  std::string refresh;
  std::chrono::seconds lifetime{};  // of the access token
};

struct SignedIn {
  std::string accountId;
  std::string signInId;
  Date signedInAt;  // with a password or a code; a refresh does not renew it
};

class SignIns {
 public:
  SignIns(Clock clock, std::chrono::seconds accessTokenLifetime);

  Tokens open(Database::Transaction& transaction, const std::string& accountId) const;

  // Nothing for an unknown or expired token.
  std::optional<SignedIn> authenticate(Database::Transaction& transaction,
                                       const std::string& accessToken) const;

  struct Renewal {
    std::string accountId;
    Tokens tokens;
  };
  // Nothing for a token that is unknown or was used before. Commit in either case.
  std::optional<Renewal> renew(Database::Transaction& transaction,
                               const std::string& refreshToken) const;

  // Ends every sign-in of the account but this one.
  void endOthers(Database::Transaction& transaction, const SignedIn& kept) const;

 private:
  Tokens issue(Database::Transaction& transaction, const std::string& signInId) const;

  Clock clock_;
  std::chrono::seconds accessTokenLifetime_;
};

}  // namespace quillo::service
