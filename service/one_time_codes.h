// Six-digit codes that prove that somebody reads the mail of an account.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "service/clock.h"
#include "service/database.h"

namespace quillo::service {

enum class CodePurpose { signup, recovery };

class OneTimeCodes {
 public:
  static constexpr std::chrono::seconds lifetime = std::chrono::minutes(10);
  static constexpr int tries = 5;

  explicit OneTimeCodes(Clock clock) : clock_(std::move(clock)) {}

  // A new code, which takes the place of the last one for this purpose.
  std::string issue(Database::Transaction& transaction, const std::string& accountId,
                    CodePurpose purpose) const;

  // Whether `code` is the one that was issued. The right code serves once; a wrong one uses up a
  // try. Commit in either case.
  bool redeem(Database::Transaction& transaction, const std::string& accountId, CodePurpose purpose,
              std::string_view code) const;

 private:
  Clock clock_;
};

}  // namespace quillo::service
