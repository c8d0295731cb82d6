#include "state/token_store.h"

#include "base/text.h"

namespace quillo {
namespace {

constexpr std::string_view service = "com.murmex.mac.auth";

}  // namespace

std::optional<std::string> MacKeychainTokenStore::read(std::string_view account) const {
  Keychain::ReadResult result = keychain_.read(service, account);
  if (result.status != KeychainStatus::success || result.data.empty() || !isValidUtf8(result.data))
    return std::nullopt;
  return std::move(result.data);
}

bool MacKeychainTokenStore::save(std::string_view value, std::string_view account) {
  return value.empty() ? removeItem(account) : updateOrAdd(value, account);
}

void MacKeychainTokenStore::remove(std::string_view account) {
  removeItem(account);
}

bool MacKeychainTokenStore::removeItem(std::string_view account) {
  const KeychainStatus status = keychain_.remove(service, account);
  if (status == KeychainStatus::success || status == KeychainStatus::itemNotFound) return true;
  logFailure("delete", account, status);
  return false;
}

bool MacKeychainTokenStore::updateOrAdd(std::string_view value, std::string_view account) {
  const Bytes data(value);
  const KeychainStatus updated = keychain_.update(service, account, data);
  if (updated == KeychainStatus::success) return true;
  if (updated != KeychainStatus::itemNotFound) {
    logFailure("update", account, updated);
    return false;
  }
  const KeychainStatus added = keychain_.add(service, account, data);
  if (added == KeychainStatus::success) return true;
  logFailure("add", account, added);
  return false;
}

void MacKeychainTokenStore::logFailure(std::string_view operation, std::string_view account,
                                       KeychainStatus status) {
  std::string line(operation);
  line += " failed account=";
  line += account;
  line += " status=" + std::to_string(static_cast<std::int32_t>(status));
  log_.log("keychain", line);
}

}  // namespace quillo
