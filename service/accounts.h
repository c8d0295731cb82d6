// Accounts: sign-up, sign-in, confirmation, recovery, profile, deletion.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "service/clock.h"
#include "service/cryptography.h"
#include "service/database.h"
#include "service/one_time_codes.h"
#include "service/sign_ins.h"

namespace quillo::service {

// What would be sent to a user's mailbox.
struct Mail {
  std::string to;
  std::string subject;
  std::string code;
};
using Mailbox = std::function<void(const Mail&)>;

struct Account {
  std::string id;
  std::string email;
  std::optional<std::string> fullName;
  std::string plan;
  Date createdAt;
  std::optional<Date> confirmedAt;
};

struct Session {
  Account account;
  Tokens tokens;
};

enum class EmailConfirmation { notAsked, demanded };

struct AccountRules {
  EmailConfirmation confirmation = EmailConfirmation::notAsked;
  std::chrono::seconds accessTokenLifetime{3600};
  // An account is deleted only soon after its user proved who it is.
  std::chrono::seconds deletionWindow = std::chrono::minutes(10);
  std::string planOfNewAccounts = "free";
  PasswordCost passwordCost;
};

// Every refusal is a ServiceError. Any thread.
class Accounts {
 public:
  Accounts(Database& database, Clock clock, Mailbox mailbox, AccountRules rules);

  struct SignUp {
    Account account;
    std::optional<Tokens> tokens;  // none before the address is confirmed
  };
  SignUp signUp(const std::string& email, const std::string& password,
                const std::optional<std::string>& fullName);
  Session signIn(const std::string& email, const std::string& password);
  Session refresh(const std::string& refreshToken);
  Session verify(const std::string& email, CodePurpose purpose, const std::string& code);

  // Both say nothing about whether there is such an account.
  void sendRecovery(const std::string& email);
  void resendConfirmation(const std::string& email);

  struct Authenticated {
    Account account;
    SignedIn signIn;
  };
  // Nothing for an unknown or expired token.
  std::optional<Authenticated> authenticate(const std::string& accessToken);

  // Absent parts stay. A new password ends the account's other sign-ins.
  Account update(const Authenticated& who, const std::optional<std::string>& password,
                 const std::optional<std::string>& fullName);
  void remove(const Authenticated& who);

 private:
  Session openSession(Database::Transaction& transaction, const std::string& accountId);

  Database& database_;
  Clock clock_;
  Mailbox mailbox_;
  AccountRules rules_;
  SignIns signIns_;
  OneTimeCodes codes_;
};

}  // namespace quillo::service
