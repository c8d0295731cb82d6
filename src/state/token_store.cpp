#include "state/token_store.h"

#include "base/text.h"

namespace quillo {
namespace {

constexpr std::string_view service = "com.murmex.mac.auth";

}  // namespace

std::optional<std::string> MacKeychainTokenStore::read(std::string_view account) const {
  auto token = keychain_.read(service, account);
  if (!token || token->empty() || !isValidUtf8(*token)) return std::nullopt;
  return *std::move(token);
}

bool MacKeychainTokenStore::save(std::string_view value, std::string_view account) {
  return value.empty() ? removeItem(account) : updateOrAdd(value, account);
}

void MacKeychainTokenStore::remove(std::string_view account) {
  removeItem(account);
}

bool MacKeychainTokenStore::removeItem(std::string_view account) {
  const auto removed = keychain_.remove(service, account);
  if (removed || removed.error() == KeychainError::itemNotFound) return true;
  logFailure("delete", account, removed.error());
  return false;
}

bool MacKeychainTokenStore::updateOrAdd(std::string_view value, std::string_view account) {
  const Bytes data(value);
  const auto updated = keychain_.update(service, account, data);
  if (updated) return true;
  if (updated.error() != KeychainError::itemNotFound) {
    logFailure("update", account, updated.error());
    return false;
  }
  const auto added = keychain_.add(service, account, data);
  if (added) return true;
  logFailure("add", account, added.error());
  return false;
}

void MacKeychainTokenStore::logFailure(std::string_view operation, std::string_view account,
                                       KeychainError error) {
  std::string line(operation);
  line += " failed account=";
  line += account;
  line += " status=" + std::to_string(static_cast<std::int32_t>(error));
  log_.log("keychain", line);
}

}  // namespace quillo
