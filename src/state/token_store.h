// Secret texts in the keychain.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/log.h"
#include "platform/keychain.h"

namespace quillo {

// One item an account name. Nothing throws; the log has the numbers of the failures, never the
// secret. Synchronous, main thread only.
class MacKeychainTokenStore {
 public:
  MacKeychainTokenStore(Keychain& keychain, Log& log) : keychain_(keychain), log_(log) {}

  // Nothing also for an empty value and for bytes that are no text.
  std::optional<std::string> read(std::string_view account) const;
  // True when the value is stored; an empty one removes the item.
  bool save(std::string_view value, std::string_view account);
  void remove(std::string_view account);

 private:
  bool removeItem(std::string_view account);
  bool updateOrAdd(std::string_view value, std::string_view account);
  void logFailure(std::string_view operation, std::string_view account, KeychainError error);

  Keychain& keychain_;
  Log& log_;
};

}  // namespace quillo
