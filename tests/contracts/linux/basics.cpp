// Main thread, queues, settings, keyring and files of the Linux host.
#include <gio/gio.h>

#include <csignal>

#include <thread>

#include "contracts/linux/linux_contract_host.h"
#include "contracts/linux/linux_small_disk.h"
#include "contracts/suites/file_manager_contract.h"
#include "contracts/suites/keychain_contract.h"
#include "contracts/suites/main_thread_contract.h"
#include "contracts/suites/serial_queue_contract.h"
#include "contracts/suites/user_defaults_contract.h"
#include "hosts/linux/posix/json_user_defaults.h"
#include "hosts/linux/posix/posix_file_manager.h"
#include "hosts/linux/posix/system_clock.h"
#include "hosts/linux/posix/thread_serial_queues.h"
#include "hosts/linux/session/secret_service_keychain.h"

namespace quillo::contracts {
namespace {

class LinuxMainThread final : public LinuxContractHost<MainThreadHost> {
 public:
  void elsewhere(const std::function<void()>& work) override { std::thread(work).join(); }
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, MainThreadContract, hostedBy<LinuxMainThread>());

class LinuxSerialQueues final : public LinuxContractHost<SerialQueueHost> {
 public:
  SerialQueues& queues() override { return queues_; }

 private:
  linux_host::ThreadSerialQueues queues_;
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, SerialQueueContract, hostedBy<LinuxSerialQueues>());

class LinuxUserDefaults final : public LinuxContractHost<UserDefaultsHost> {
 public:
  LinuxUserDefaults() { restart(); }
  UserDefaults& store() override { return *store_; }
  void restart() override {
    store_.reset();
    store_ = std::make_unique<linux_host::JsonUserDefaults>(
        folder_.path() / "quillo" / "settings.json", mainThread(), clock_, log_);
  }

 private:
  TemporaryFolder folder_;
  linux_host::SystemClock clock_;
  LinesLog log_;
  std::unique_ptr<linux_host::JsonUserDefaults> store_;
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, UserDefaultsContract, hostedBy<LinuxUserDefaults>());

class LinuxFileManager final : public LinuxContractHost<FileManagerHost> {
 public:
  FileManager& files() override { return files_; }
  void leaveRoomFor(std::optional<std::int64_t> bytes) override { disk_.leaveRoomFor(bytes); }

 private:
  TemporaryFolder home_;
  SmallDisk disk_{home_.path()};
  linux_host::PosixFileManager files_{{.cacheHome = home_.path() / ".cache",
                                       .configHome = home_.path() / ".config",
                                       .dataHome = home_.path() / ".local/share",
                                       .stateHome = home_.path() / ".local/state"}};
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, FileManagerContract, hostedBy<LinuxFileManager>());

// The password of the keyring of scripts/virtual-desktop.
constexpr std::string_view keyringPassword = "quillo";

// Locks and unlocks the keyring beside the program, as the user's session would.
class DesktopKeyring {
 public:
  DesktopKeyring() : bus_(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {}
  ~DesktopKeyring() {
    if (isHung_) hang(false);
    g_object_unref(bus_);
  }
  DesktopKeyring(const DesktopKeyring&) = delete;
  DesktopKeyring& operator=(const DesktopKeyring&) = delete;

  void lock() {
    call("org.freedesktop.Secret.Service", "Lock", g_variant_new_parsed("([%o],)", collection));
  }
  void unlock() {
    const Variant session = call("org.freedesktop.Secret.Service", "OpenSession",
                                 g_variant_new_parsed("('plain', <''>)"));
    const char* path = nullptr;
    g_variant_get_child(session.get(), 1, "&o", &path);
    GVariant* const password = g_variant_new_fixed_array(
        G_VARIANT_TYPE_BYTE, keyringPassword.data(), keyringPassword.size(), 1);
    call(
        "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface", "UnlockWithMasterPassword",
        g_variant_new_parsed("(%o, (%o, @ay [], %@ay, 'text/plain'))", collection, path, password));
  }
  // It stands and answers nobody.
  void hang(bool isHung) {
    const Variant process =
        ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "GetConnectionUnixProcessID", g_variant_new("(s)", "org.freedesktop.secrets"));
    guint32 id = 0;
    g_variant_get(process.get(), "(u)", &id);
    ASSERT_EQ(::kill(static_cast<pid_t>(id), isHung ? SIGSTOP : SIGCONT), 0);
    isHung_ = isHung;
  }

 private:
  using Variant = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;
  static constexpr const char* collection = "/org/freedesktop/secrets/collection/login";

  Variant call(const char* interface, const char* method, GVariant* arguments) {
    return ask("org.freedesktop.secrets", "/org/freedesktop/secrets", interface, method, arguments);
  }
  Variant ask(const char* name, const char* object, const char* interface, const char* method,
              GVariant* arguments) {
    GError* error = nullptr;
    Variant answer(
        g_dbus_connection_call_sync(bus_, name, object, interface, method, arguments, nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error),
        &g_variant_unref);
    if (error) ADD_FAILURE() << method << ": " << error->message;
    g_clear_error(&error);
    return answer;
  }

  GDBusConnection* bus_;
  bool isHung_ = false;
};

class LinuxKeychain final : public LinuxContractHost<KeychainHost> {
 public:
  LinuxKeychain() { removeItems(); }
  ~LinuxKeychain() override {
    if (isLocked_) keyring_.unlock();
    removeItems();
  }
  Keychain& keychain() override { return keychain_; }
  bool refuseEverything() override {
    keyring_.lock();
    isLocked_ = true;
    return true;
  }

 private:
  void removeItems() {
    for (const char* account : {"mac.accessToken", "mac.refreshToken", "new"})
      for (const char* service : {"com.murmex.mac.auth", "another program"})
        keychain_.remove(service, account);
  }

  LinesLog log_;
  linux_host::SecretServiceKeychain keychain_{log_};
  DesktopKeyring keyring_;
  bool isLocked_ = false;
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, KeychainContract, hostedBy<LinuxKeychain>());

TEST(SecretServiceKeychain, AHungKeyringCostsTheLimitAndWhatWasGivenUpIsNotDoneLater) {
  constexpr KeychainError timedOut = linux_host::secret_service_error::timedOut;
  LinesLog log;
  linux_host::SecretServiceKeychain keychain(log, std::chrono::seconds(1));
  DesktopKeyring keyring;
  ASSERT_EQ(keychain.read("hung", "account"), KeychainError::itemNotFound);
  keyring.hang(true);
  const MonotonicTime begun = linux_host::monotonicNow();
  EXPECT_EQ(keychain.read("hung", "account"), timedOut);
  EXPECT_EQ(keychain.add("hung", "account", "late"), timedOut);
  EXPECT_LT(linux_host::monotonicNow() - begun, Duration(std::chrono::seconds(4)));
  EXPECT_EQ(log.lines().size(), 1u);
  keyring.hang(false);
  EXPECT_EQ(keychain.read("hung", "account"), KeychainError::itemNotFound);
}

}  // namespace
}  // namespace quillo::contracts
