#include "service/one_time_codes.h"

#include "service/cryptography.h"

namespace quillo::service {
namespace {

std::string nameOf(CodePurpose purpose) {
  return purpose == CodePurpose::signup ? "signup" : "recovery";
}

}  // namespace

std::string OneTimeCodes::issue(Database::Transaction& transaction, const std::string& accountId,
                                CodePurpose purpose) const {
  std::string code = newOneTimeCode();
  transaction.run(
      "INSERT OR REPLACE INTO one_time_codes (account_id, purpose, digest, expires_at, tries_left) "
      "VALUES (?, ?, ?, ?, ?)",
      {accountId, nameOf(purpose), digest(code), epochSeconds(clock_() + lifetime),
       std::int64_t{tries}});
  return code;
}

bool OneTimeCodes::redeem(Database::Transaction& transaction, const std::string& accountId,
                          CodePurpose purpose, std::string_view code) const {
  const auto row = transaction.row(
      "SELECT digest FROM one_time_codes "
      "WHERE account_id = ? AND purpose = ? AND expires_at > ? AND tries_left > 0",
      {accountId, nameOf(purpose), epochSeconds(clock_())});
  if (!row) return false;
  if (row->text(0) != digest(code)) {
    transaction.run(
        "UPDATE one_time_codes SET tries_left = tries_left - 1 "
        "WHERE account_id = ? AND purpose = ?",
        {accountId, nameOf(purpose)});
    return false;
  }
  transaction.run("DELETE FROM one_time_codes WHERE account_id = ? AND purpose = ?",
                  {accountId, nameOf(purpose)});
  return true;
}

}  // namespace quillo::service
