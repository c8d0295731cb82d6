// The user's keyring, through the Secret Service (freedesktop.org).
#pragma once

#include <functional>
#include <string>

#include "base/log.h"
#include "base/time.h"
#include "hosts/linux/posix/thread_serial_queue.h"
#include "platform/keychain.h"

namespace quillo::linux_host {

// Statuses of this host, beside those of the port.
namespace secret_service_status {
inline constexpr KeychainStatus unavailable{1};  // no session bus, or no keyring on it
inline constexpr KeychainStatus locked{2};       // the item is there and needs the user's password
inline constexpr KeychainStatus timedOut{3};     // no answer within the limit
inline constexpr KeychainStatus refused{4};      // any other error of the service
inline constexpr KeychainStatus duplicate{5};    // what is to be added is there already
}  // namespace secret_service_status

// The service is asked on a thread of its own, and a call waits for it no longer than the limit.
// Whatever goes wrong is logged when it begins, without names or contents of items.
class SecretServiceKeychain final : public Keychain {
 public:
  explicit SecretServiceKeychain(Log& log, Duration limit = std::chrono::seconds(3));

  // Asks nobody for a password: a locked item is `locked`, never absent.
  ReadResult read(std::string_view service, std::string_view account) override;
  KeychainStatus update(std::string_view service, std::string_view account,
                        const Bytes& data) override;
  KeychainStatus add(std::string_view service, std::string_view account,
                     const Bytes& data) override;
  KeychainStatus remove(std::string_view service, std::string_view account) override;

 private:
  // What the worker found out, and the service's own words for a failure.
  struct Outcome {
    KeychainStatus status = KeychainStatus::success;
    Bytes data;
    std::string problem;
  };
  struct Call;  // one operation, as the worker runs it
  Outcome run(std::string_view service, std::string_view account,
              std::function<Outcome(Call&)> operation);
  Outcome note(Outcome outcome);

  Log& log_;
  const Duration limit_;
  KeychainStatus lastTrouble_ = KeychainStatus::success;
  ThreadSerialQueue worker_{"quillo.keychain"};
};

}  // namespace quillo::linux_host
