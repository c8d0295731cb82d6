// The keychain in memory.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/keychain.h"

namespace quillo::simulated {

class MemoryKeychain final : public Keychain {
 public:
  // As the platform numbers them.
  static constexpr KeychainStatus duplicateItem{-25299};
  static constexpr KeychainStatus interactionNotAllowed{-25308};
  static constexpr KeychainStatus authorisationFailed{-25293};

  ReadResult read(std::string_view service, std::string_view account) override;
  KeychainStatus update(std::string_view service, std::string_view account,
                        const Bytes& data) override;
  KeychainStatus add(std::string_view service, std::string_view account,
                     const Bytes& data) override;
  KeychainStatus remove(std::string_view service, std::string_view account) override;

  // --- Driver ---

  enum class Operation { read, update, add, remove };
  struct Call {
    Operation operation;
    std::string service;
    std::string account;
    KeychainStatus status;
  };

  // Every operation, or one kind of them, fails with `status` until allow() is called.
  void refuse(KeychainStatus status);
  void refuse(Operation operation, KeychainStatus status) { refusals_[operation] = status; }
  void allow() { refusals_.clear(); }

  std::optional<Bytes> item(std::string_view service, std::string_view account) const;
  void setItem(std::string_view service, std::string_view account, const Bytes& data);
  std::size_t itemCount() const { return items_.size(); }
  const std::vector<Call>& calls() const { return calls_; }

 private:
  using Key = std::pair<std::string, std::string>;

  // What stands in the way of `operation`, or success.
  KeychainStatus obstacle(Operation operation, const Key& key) const;
  KeychainStatus note(Operation operation, const Key& key, KeychainStatus status);

  std::map<Key, Bytes> items_;
  std::map<Operation, KeychainStatus> refusals_;
  std::vector<Call> calls_;
};

}  // namespace quillo::simulated
