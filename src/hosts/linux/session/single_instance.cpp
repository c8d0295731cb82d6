#include "hosts/linux/session/single_instance.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>
#include <utility>

#include "hosts/linux/posix/monotonic_clock.h"
#include "hosts/linux/posix/posix_file_manager.h"

namespace quillo::linux_host {
namespace {

constexpr mode_t privateFile = 0600;
constexpr auto retryPause = std::chrono::milliseconds(20);
constexpr int answerLimitMilliseconds = 500;
constexpr char received = '!';

std::optional<sockaddr_un> addressOf(const FilePath& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string text = path.string();
  if (text.size() >= sizeof address.sun_path) return std::nullopt;
  std::ranges::copy(text, address.sun_path);
  return address;
}

FileDescriptor unixSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

}  // namespace

SingleInstance::SingleInstance(FilePath directory) : directory_(std::move(directory)) {}

SingleInstance::~SingleInstance() {
  if (socket_) ::unlink((directory_ / "instance.socket").c_str());
}

SingleInstance::Claim SingleInstance::claim(Duration limit) {
  if (!makePrivateDirectory(directory_)) return Claim::impossible;
  const FilePath lockFile = directory_ / "instance.lock";
  const MonotonicTime end = monotonicNow() + limit;
  while (true) {
    FileDescriptor lock(::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, privateFile));
    if (!lock) return Claim::impossible;
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
      lock_ = std::move(lock);
      socket_ = listen();
      return socket_ ? Claim::first : Claim::impossible;
    }
    // The other one may be about to listen, or about to end.
    if (askToReopen()) return Claim::runningElsewhere;
    if (monotonicNow() >= end) return Claim::unresponsive;
    std::this_thread::sleep_for(retryPause);
  }
}

FileDescriptor SingleInstance::listen() const {
  const FilePath path = directory_ / "instance.socket";
  const auto address = addressOf(path);
  FileDescriptor socket = unixSocket();
  if (!address || !socket) return {};
  ::unlink(path.c_str());
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
      ::listen(socket.get(), SOMAXCONN) != 0)
    return {};
  return socket;
}

// True when the other program has taken the request.
bool SingleInstance::askToReopen() const {
  const auto address = addressOf(directory_ / "instance.socket");
  const FileDescriptor socket = unixSocket();
  if (!address || !socket ||
      ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0)
    return false;
  pollfd answered{socket.get(), POLLIN, 0};
  char answer = 0;
  return ::poll(&answered, 1, answerLimitMilliseconds) == 1 &&
         ::read(socket.get(), &answer, 1) == 1 && answer == received;
}

void SingleInstance::onReopen(std::function<void()> asked) {
  asked_ = std::move(asked);
  if (!socket_) return;
  notifier_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this] { answer(); });
}

void SingleInstance::answer() {
  const FileDescriptor peer(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (!peer) return;
  // A peer that has gone by now asked all the same.
  (void)::send(peer.get(), &received, 1, MSG_NOSIGNAL);
  asked_();
}

}  // namespace quillo::linux_host
