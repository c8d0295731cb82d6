// Secret items of the user, by service and account.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/bytes.h"
#include "base/result.h"

namespace quillo {

// A number that log lines show. Hosts pass on their own ones for other failures, never this.
enum class KeychainError : std::int32_t { itemNotFound = -25300 };

// Main thread. Each call blocks for three seconds at most: a keyring that has not answered by then
// is an error.
class Keychain {
 public:
  virtual ~Keychain() = default;
  virtual Result<Bytes, KeychainError> read(std::string_view service, std::string_view account) = 0;
  // Changes an existing item.
  virtual Result<void, KeychainError> update(std::string_view service, std::string_view account,
                                             const Bytes& data) = 0;
  // Makes a new item.
  virtual Result<void, KeychainError> add(std::string_view service, std::string_view account,
                                          const Bytes& data) = 0;
  virtual Result<void, KeychainError> remove(std::string_view service,
                                             std::string_view account) = 0;
};

}  // namespace quillo
