#include "service/sign_ins.h"

#include "service/cryptography.h"

namespace quillo::service {

SignIns::SignIns(Clock clock, std::chrono::seconds accessTokenLifetime)
    : clock_(std::move(clock)), accessTokenLifetime_(accessTokenLifetime) {}

Tokens SignIns::open(Database::Transaction& transaction, const std::string& accountId) const {
  const std::string id = newIdentifier();
  transaction.run("INSERT INTO sign_ins (id, signed_in_at, account_id) VALUES (?, ?, ?)",
                  {id, epochSeconds(clock_()), accountId});
  return issue(transaction, id);
}

Tokens SignIns::issue(Database::Transaction& transaction, const std::string& signInId) const {
  const std::int64_t now = epochSeconds(clock_());
  transaction.run("DELETE FROM access_tokens WHERE expires_at <= ?", {now});
  Tokens tokens{newToken(), newToken(), accessTokenLifetime_};
  transaction.run("INSERT INTO access_tokens (digest, expires_at, sign_in_id) VALUES (?, ?, ?)",
                  {digest(tokens.access), now + accessTokenLifetime_.count(), signInId});
  transaction.run("INSERT INTO refresh_tokens (digest, sign_in_id) VALUES (?, ?)",
                  {digest(tokens.refresh), signInId});
  return tokens;
}

std::optional<SignedIn> SignIns::authenticate(Database::Transaction& transaction,
                                              const std::string& accessToken) const {
  const auto row = transaction.row(
      "SELECT account_id, sign_ins.id, signed_in_at FROM access_tokens "
      "JOIN sign_ins ON sign_ins.id = sign_in_id WHERE digest = ? AND expires_at > ?",
      {digest(accessToken), epochSeconds(clock_())});
  if (!row) return std::nullopt;
  return SignedIn{row->text(0), row->text(1), dateFromEpochSeconds(row->integer(2))};
}

std::optional<SignIns::Renewal> SignIns::renew(Database::Transaction& transaction,
                                               const std::string& refreshToken) const {
  const auto row = transaction.row(
      "SELECT used, sign_in_id, account_id FROM refresh_tokens "
      "JOIN sign_ins ON sign_ins.id = sign_in_id WHERE digest = ?",
      {digest(refreshToken)});
  if (!row) return std::nullopt;
  const std::string& signInId = row->text(1);
  if (row->integer(0) != 0) {
    transaction.run("DELETE FROM sign_ins WHERE id = ?", {signInId});
    return std::nullopt;
  }
  transaction.run("UPDATE refresh_tokens SET used = 1 WHERE digest = ?", {digest(refreshToken)});
  return Renewal{row->text(2), issue(transaction, signInId)};
}

void SignIns::endOthers(Database::Transaction& transaction, const SignedIn& kept) const {
  transaction.run("DELETE FROM sign_ins WHERE account_id = ? AND id <> ?",
                  {kept.accountId, kept.signInId});
}

}  // namespace quillo::service
