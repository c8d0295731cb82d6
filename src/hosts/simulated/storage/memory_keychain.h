// The keychain in memory.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/keychain.h"

namespace quillo::simulated {

class MemoryKeychain final : public Keychain {
 public:
  // As the platform numbers them.
  static constexpr KeychainError duplicateItem{-25299};
  static constexpr KeychainError interactionNotAllowed{-25308};
  static constexpr KeychainError authorisationFailed{-25293};

  Result<Bytes, KeychainError> read(std::string_view service, std::string_view account) override;
  Result<void, KeychainError> update(std::string_view service, std::string_view account,
                                     const Bytes& data) override;
  Result<void, KeychainError> add(std::string_view service, std::string_view account,
                                  const Bytes& data) override;
  Result<void, KeychainError> remove(std::string_view service, std::string_view account) override;

  // --- Driver ---

  enum class Operation { read, update, add, remove };
  // Every operation, or one kind of them, fails with `error` until allow() is called.
  void refuse(KeychainError error);
  void refuse(Operation operation, KeychainError error) { refusals_[operation] = error; }
  void allow() { refusals_.clear(); }

  std::optional<Bytes> item(std::string_view service, std::string_view account) const;
  void setItem(std::string_view service, std::string_view account, const Bytes& data);
  std::size_t itemCount() const { return items_.size(); }

 private:
  using Key = std::pair<std::string, std::string>;

  // What stands in the way of `operation`.
  Result<void, KeychainError> check(Operation operation, const Key& key) const;

  std::map<Key, Bytes> items_;
  std::map<Operation, KeychainError> refusals_;
};

}  // namespace quillo::simulated
