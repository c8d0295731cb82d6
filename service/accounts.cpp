#include "service/accounts.h"

#include "base/text.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

constexpr std::size_t minimumPasswordCharacters = 6;
constexpr std::size_t maximumPasswordBytes = 1024;
constexpr std::size_t maximumEmailBytes = 254;  // RFC 5321, section 4.5.3.1.3

constexpr const char* confirmationSubject = "Confirm your address";
constexpr const char* recoverySubject = "Reset your password";

// Addresses are one when they differ in case or outer blanks only.
std::string normalisedEmail(const std::string& email) {
  std::string address = lowercased(trimmed(email));
  const std::size_t at = address.find('@');
  const bool wellFormed = at != 0 && at != std::string::npos && at + 1 < address.size() &&
                          address.find('@', at + 1) == std::string::npos &&
                          address.find_first_of(" \t\r\n") == std::string::npos &&
                          address.size() <= maximumEmailBytes;
  if (!wellFormed)
    throw ServiceError(400, "validation_failed",
                       "Unable to validate email address: invalid format");
  return address;
}

void demandUsablePassword(const std::string& password) {
  if (characterCount(password) < minimumPasswordCharacters)
    throw ServiceError(422, "weak_password", "Password should be at least 6 characters.");
  if (password.size() > maximumPasswordBytes)
    throw ServiceError(422, "weak_password", "Password should be at most 1024 bytes.");
}

struct StoredAccount {
  Account account;
  std::string passwordHash;
};

StoredAccount accountFrom(const Row& row) {
  StoredAccount stored{Account{row.text(0), row.text(1), row.optionalText(2), row.text(3),
                               dateFromEpochSeconds(row.integer(4)), std::nullopt},
                       row.text(6)};
  if (const auto confirmed = row.optionalInteger(5))
    stored.account.confirmedAt = dateFromEpochSeconds(*confirmed);
  return stored;
}

// `key` is "email" or "id".
std::optional<StoredAccount> find(Database::Transaction& transaction, const std::string& key,
                                  const std::string& value) {
  const auto row = transaction.row(
      "SELECT id, email, full_name, plan, created_at, confirmed_at, password_hash FROM accounts "
      "WHERE " +
          key + " = ?",
      {value});
  if (!row) return std::nullopt;
  return accountFrom(*row);
}

}  // namespace

Accounts::Accounts(Database& database, Clock clock, Mailbox mailbox, AccountRules rules)
    : database_(database),
      clock_(clock),
      mailbox_(std::move(mailbox)),
      rules_(std::move(rules)),
      signIns_(clock, rules_.accessTokenLifetime),
      codes_(clock) {}

Session Accounts::openSession(Database::Transaction& transaction, const std::string& accountId) {
  return {find(transaction, "id", accountId)->account, signIns_.open(transaction, accountId)};
}

Accounts::SignUp Accounts::signUp(const std::string& email, const std::string& password,
                                  const std::optional<std::string>& fullName) {
  const std::string address = normalisedEmail(email);
  demandUsablePassword(password);
  const std::string hash = passwordHash(password, rules_.passwordCost);
  const bool confirmed = rules_.confirmation == EmailConfirmation::notAsked;

  auto transaction = database_.begin();
  const auto existing = find(transaction, "email", address);
  if (existing && existing->account.confirmedAt)
    throw ServiceError(422, "user_already_exists", "User already registered");
  // Nobody has proved to own an unconfirmed address, so the latest sign-up replaces the earlier.
  transaction.run("DELETE FROM accounts WHERE email = ?", {address});
  const std::string id = newIdentifier();
  const std::int64_t now = epochSeconds(clock_());
  transaction.run(
      "INSERT INTO accounts (id, email, password_hash, full_name, plan, created_at, confirmed_at) "
      "VALUES (?, ?, ?, ?, ?, ?, ?)",
      {id, address, hash, sqlText(fullName), rules_.planOfNewAccounts, now,
       confirmed ? SqlValue(now) : SqlValue(nullptr)});
  if (confirmed) {
    Session session = openSession(transaction, id);
    transaction.commit();
    return {session.account, session.tokens};
  }
  const std::string code = codes_.issue(transaction, id, CodePurpose::signup);
  const Account account = find(transaction, "id", id)->account;
  transaction.commit();
  mailbox_({address, confirmationSubject, code});
  return {account, std::nullopt};
}

Session Accounts::signIn(const std::string& email, const std::string& password) {
  const ServiceError refusal(400, "invalid_grant", "Invalid login credentials");
  std::optional<StoredAccount> stored;
  {
    auto transaction = database_.begin();
    stored = find(transaction, "email", lowercased(trimmed(email)));
  }
  // Hashing takes its time, so nobody waits for the database meanwhile.
  if (!stored || !passwordMatches(password, stored->passwordHash)) throw refusal;
  if (!stored->account.confirmedAt)
    throw ServiceError(400, "email_not_confirmed", "Email not confirmed");
  auto transaction = database_.begin();
  if (!find(transaction, "id", stored->account.id)) throw refusal;
  Session session = openSession(transaction, stored->account.id);
  transaction.commit();
  return session;
}

Session Accounts::refresh(const std::string& refreshToken) {
  auto transaction = database_.begin();
  const auto renewal = signIns_.renew(transaction, refreshToken);
  const auto stored = renewal ? find(transaction, "id", renewal->accountId) : std::nullopt;
  transaction.commit();
  if (!stored)
    throw ServiceError(400, "invalid_grant", "Invalid Refresh Token: Already Used or Not Found");
  return {stored->account, renewal->tokens};
}

Session Accounts::verify(const std::string& email, CodePurpose purpose, const std::string& code) {
  auto transaction = database_.begin();
  const auto stored = find(transaction, "email", lowercased(trimmed(email)));
  const bool right =
      stored && codes_.redeem(transaction, stored->account.id, purpose, trimmed(code));
  if (!right) {
    transaction.commit();
    throw ServiceError(403, "otp_expired", "Token has expired or is invalid");
  }
  transaction.run("UPDATE accounts SET confirmed_at = coalesce(confirmed_at, ?) WHERE id = ?",
                  {epochSeconds(clock_()), stored->account.id});
  Session session = openSession(transaction, stored->account.id);
  transaction.commit();
  return session;
}

void Accounts::sendRecovery(const std::string& email) {
  const std::string address = normalisedEmail(email);
  auto transaction = database_.begin();
  const auto stored = find(transaction, "email", address);
  if (!stored) return;
  const std::string code = codes_.issue(transaction, stored->account.id, CodePurpose::recovery);
  transaction.commit();
  mailbox_({address, recoverySubject, code});
}

void Accounts::resendConfirmation(const std::string& email) {
  const std::string address = normalisedEmail(email);
  auto transaction = database_.begin();
  const auto stored = find(transaction, "email", address);
  if (!stored || stored->account.confirmedAt) return;
  const std::string code = codes_.issue(transaction, stored->account.id, CodePurpose::signup);
  transaction.commit();
  mailbox_({address, confirmationSubject, code});
}

std::optional<Accounts::Authenticated> Accounts::authenticate(const std::string& accessToken) {
  auto transaction = database_.begin();
  const auto signIn = signIns_.authenticate(transaction, accessToken);
  if (!signIn) return std::nullopt;
  return Authenticated{find(transaction, "id", signIn->accountId)->account, *signIn};
}

Account Accounts::update(const Authenticated& who, const std::optional<std::string>& password,
                         const std::optional<std::string>& fullName) {
  std::string hash;
  if (password) {
    demandUsablePassword(*password);
    hash = passwordHash(*password, rules_.passwordCost);
  }
  auto transaction = database_.begin();
  if (password) {
    transaction.run("UPDATE accounts SET password_hash = ? WHERE id = ?", {hash, who.account.id});
    signIns_.endOthers(transaction, who.signIn);
  }
  if (fullName)
    transaction.run("UPDATE accounts SET full_name = ? WHERE id = ?", {*fullName, who.account.id});
  const auto stored = find(transaction, "id", who.account.id);
  transaction.commit();
  if (!stored) throw ServiceError(404, "user_not_found", "User not found");
  return stored->account;
}

void Accounts::remove(const Authenticated& who) {
  if (clock_() - who.signIn.signedInAt > rules_.deletionWindow)
    throw ServiceError(403, "reauthentication_needed",
                       "Sign in again before the account is deleted.");
  auto transaction = database_.begin();
  transaction.run("DELETE FROM accounts WHERE id = ?", {who.account.id});
  // What was used on a device stays counted there.
  transaction.run("DELETE FROM usage WHERE subject = ?", {"account:" + who.account.id});
  transaction.run("UPDATE feedback SET user_id = NULL WHERE user_id = ?", {who.account.id});
  transaction.commit();
}

}  // namespace quillo::service
