#include "hosts/linux/session/xdg_opener.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QUrl>
#include <csignal>
#include <string>
#include <thread>

namespace quillo::linux_host {
namespace {

// In a session of its own, so that it outlives this program, and without the signals that this one
// keeps for its own loop.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

Result<void, OpenerFailure> open(std::string address) {
  const SpawnAttributes attributes;
  std::string program = "xdg-open";
  char* arguments[] = {program.data(), address.data(), nullptr};
  pid_t child = 0;
  if (posix_spawnp(&child, program.c_str(), nullptr, attributes.get(), arguments, environ) != 0)
    return OpenerFailure::noPrograms;
  // Somebody has to take its end.
  std::thread([child] { ::waitpid(child, nullptr, 0); }).detach();
  return {};
}

}  // namespace

Result<void, OpenerFailure> XdgOpener::openFile(const FilePath& path) {
  std::error_code error;
  const FilePath whole = std::filesystem::absolute(path, error);
  if (error) return OpenerFailure::noAddress;
  return open(whole.string());
}

Result<void, OpenerFailure> XdgOpener::openURL(std::string_view url) {
  // Without a scheme it could be taken for an option or a file.
  const QUrl parsed(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size())),
                    QUrl::StrictMode);
  if (!parsed.isValid() || parsed.scheme().isEmpty()) return OpenerFailure::noAddress;
  return open(std::string(url));
}

}  // namespace quillo::linux_host
