#include "hosts/simulated/storage/memory_keychain.h"

namespace quillo::simulated {

KeychainStatus MemoryKeychain::obstacle(Operation operation, const Key& key) const {
  if (const auto refusal = refusals_.find(operation); refusal != refusals_.end())
    return refusal->second;
  const bool exists = items_.contains(key);
  if (operation == Operation::add) return exists ? duplicateItem : KeychainStatus::success;
  return exists ? KeychainStatus::success : KeychainStatus::itemNotFound;
}

KeychainStatus MemoryKeychain::note(Operation operation, const Key& key, KeychainStatus status) {
  calls_.push_back({operation, key.first, key.second, status});
  return status;
}

Keychain::ReadResult MemoryKeychain::read(std::string_view service, std::string_view account) {
  const Key key(service, account);
  const auto status = note(Operation::read, key, obstacle(Operation::read, key));
  if (status != KeychainStatus::success) return {status, {}};
  return {status, items_.at(key)};
}

KeychainStatus MemoryKeychain::update(std::string_view service, std::string_view account,
                                      const Bytes& data) {
  const Key key(service, account);
  const auto status = note(Operation::update, key, obstacle(Operation::update, key));
  if (status == KeychainStatus::success) items_[key] = data;
  return status;
}

KeychainStatus MemoryKeychain::add(std::string_view service, std::string_view account,
                                   const Bytes& data) {
  const Key key(service, account);
  const auto status = note(Operation::add, key, obstacle(Operation::add, key));
  if (status == KeychainStatus::success) items_[key] = data;
  return status;
}

KeychainStatus MemoryKeychain::remove(std::string_view service, std::string_view account) {
  const Key key(service, account);
  const auto status = note(Operation::remove, key, obstacle(Operation::remove, key));
  if (status == KeychainStatus::success) items_.erase(key);
  return status;
}

void MemoryKeychain::refuse(KeychainStatus status) {
  for (const auto operation :
       {Operation::read, Operation::update, Operation::add, Operation::remove})
    refusals_[operation] = status;
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
