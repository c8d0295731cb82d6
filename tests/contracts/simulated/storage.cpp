// The simulated files, settings and keychain keep the contracts.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/file_manager_contract.h"
#include "contracts/suites/keychain_contract.h"
#include "contracts/suites/user_defaults_contract.h"

namespace quillo::contracts {
namespace {

class SimulatedFiles final : public SimulatedHost<FileManagerHost> {
 public:
  FileManager& files() override { return desktop_.files(); }
  void leaveRoomFor(std::optional<std::int64_t> bytes) override {
    if (bytes)
      desktop_.files().setFreeBytes(*bytes);
    else
      desktop_.files().setFull(false);
  }
};
INSTANTIATE_TEST_SUITE_P(Simulated, FileManagerContract, hostedBy<SimulatedFiles>());

class SimulatedUserDefaults final : public SimulatedHost<UserDefaultsHost> {
 public:
  UserDefaults& store() override { return desktop_.userDefaults(); }
  void restart() override { desktop_.userDefaults().reload(); }
};
INSTANTIATE_TEST_SUITE_P(Simulated, UserDefaultsContract, hostedBy<SimulatedUserDefaults>());

class SimulatedKeychain final : public SimulatedHost<KeychainHost> {
 public:
  Keychain& keychain() override { return desktop_.keychain(); }
  bool refuseEverything() override {
    desktop_.keychain().refuse(simulated::MemoryKeychain::interactionNotAllowed);
    return true;
  }
};
INSTANTIATE_TEST_SUITE_P(Simulated, KeychainContract, hostedBy<SimulatedKeychain>());

}  // namespace
}  // namespace quillo::contracts
