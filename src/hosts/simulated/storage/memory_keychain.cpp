#include "hosts/simulated/storage/memory_keychain.h"

namespace quillo::simulated {

Result<void, KeychainError> MemoryKeychain::check(Operation operation, const Key& key) const {
  if (const auto refusal = refusals_.find(operation); refusal != refusals_.end())
    return refusal->second;
  const bool exists = items_.contains(key);
  if (operation == Operation::add && exists) return duplicateItem;
  if (operation != Operation::add && !exists) return KeychainError::itemNotFound;
  return {};
}

Result<Bytes, KeychainError> MemoryKeychain::read(std::string_view service,
                                                  std::string_view account) {
  const Key key(service, account);
  if (const auto possible = check(Operation::read, key); !possible) return possible.error();
  return items_.at(key);
}

Result<void, KeychainError> MemoryKeychain::update(std::string_view service,
                                                   std::string_view account, const Bytes& data) {
  const Key key(service, account);
  const auto possible = check(Operation::update, key);
  if (possible) items_[key] = data;
  return possible;
}

Result<void, KeychainError> MemoryKeychain::add(std::string_view service, std::string_view account,
                                                const Bytes& data) {
  const Key key(service, account);
  const auto possible = check(Operation::add, key);
  if (possible) items_[key] = data;
  return possible;
}

Result<void, KeychainError> MemoryKeychain::remove(std::string_view service,
                                                   std::string_view account) {
  const Key key(service, account);
  const auto possible = check(Operation::remove, key);
  if (possible) items_.erase(key);
  return possible;
}

void MemoryKeychain::refuse(KeychainError error) {
  for (const auto operation :
       {Operation::read, Operation::update, Operation::add, Operation::remove})
    refusals_[operation] = error;
}

std::optional<Bytes> MemoryKeychain::item(std::string_view service,
                                          std::string_view account) const {
  const auto found = items_.find(Key(service, account));
  return found == items_.end() ? std::nullopt : std::optional(found->second);
}

void MemoryKeychain::setItem(std::string_view service, std::string_view account,
                             const Bytes& data) {
  items_[Key(service, account)] = data;
}

}  // namespace quillo::simulated
