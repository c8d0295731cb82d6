// The user's keyring, through the Secret Service (freedesktop.org).
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/log.h"
#include "base/time.h"
#include "hosts/linux/posix/thread_serial_queue.h"
#include "platform/keychain.h"

namespace quillo::linux_host {

// Errors of this host, beside that of the port.
namespace secret_service_error {
inline constexpr KeychainError unavailable{1};  // no session bus, or no keyring on it
inline constexpr KeychainError locked{2};       // the item is there and needs the user's password
inline constexpr KeychainError timedOut{3};     // no answer within the limit
inline constexpr KeychainError refused{4};      // any other error of the service
inline constexpr KeychainError duplicate{5};    // what is to be added is there already
}  // namespace secret_service_error

// The service is asked on a thread of its own, and a call waits for it no longer than the limit.
// Whatever goes wrong is logged when it begins, without names or contents of items.
class SecretServiceKeychain final : public Keychain {
 public:
  explicit SecretServiceKeychain(Log& log, Duration limit = std::chrono::seconds(3));

  // Asks nobody for a password: a locked item is `locked`, never absent.
  Result<Bytes, KeychainError> read(std::string_view service, std::string_view account) override;
  Result<void, KeychainError> update(std::string_view service, std::string_view account,
                                     const Bytes& data) override;
  Result<void, KeychainError> add(std::string_view service, std::string_view account,
                                  const Bytes& data) override;
  Result<void, KeychainError> remove(std::string_view service, std::string_view account) override;

 private:
  // What the worker found out; only a reading has data.
  using Outcome = Result<Bytes, KeychainError>;
  struct Call;  // one operation, as the worker runs it
  Outcome run(std::string_view service, std::string_view account,
              std::function<Outcome(Call&)> operation);
  Result<void, KeychainError> change(std::string_view service, std::string_view account,
                                     std::function<Outcome(Call&)> operation);
  Outcome note(Outcome outcome, const std::string& problem);

  Log& log_;
  const Duration limit_;
  std::optional<KeychainError> lastTrouble_;
  ThreadSerialQueue worker_{"quillo.keychain"};
};

}  // namespace quillo::linux_host
