// Secret items of the user, by service and account.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/bytes.h"

namespace quillo {

// 0 is success. Hosts pass on their own numbers for other failures, never these two.
enum class KeychainStatus : std::int32_t { success = 0, itemNotFound = -25300 };

// Synchronous; main thread. Each call is bounded to a few seconds.
class Keychain {
 public:
  struct ReadResult {
    KeychainStatus status = KeychainStatus::itemNotFound;
    Bytes data;
  };

  virtual ~Keychain() = default;
  virtual ReadResult read(std::string_view service, std::string_view account) = 0;
  // Changes an existing item.
  virtual KeychainStatus update(std::string_view service, std::string_view account,
                                const Bytes& data) = 0;
  // Makes a new item.
  virtual KeychainStatus add(std::string_view service, std::string_view account,
                             const Bytes& data) = 0;
  virtual KeychainStatus remove(std::string_view service, std::string_view account) = 0;
};

}  // namespace quillo
