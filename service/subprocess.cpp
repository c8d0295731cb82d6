#include "service/subprocess.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
extern "C" {
#include <sys/pidfd.h>  // glibc 2.36 forgot to declare it as C
}

#include <array>
#include <stdexcept>

namespace quillo::service {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {
    if (descriptor_ < 0) throw std::runtime_error("no file descriptor is left");
  }
  ~Descriptor() { ::close(descriptor_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

// A file in memory never blocks its reader or its writer, as pipes would each other.
Descriptor memoryFile() {
  return Descriptor(::memfd_create("text", MFD_CLOEXEC));
}

void writeAll(const Descriptor& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file.get(), text.data(), text.size());
    if (written < 0) throw std::runtime_error("no memory for a program's input");
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  ::lseek(file.get(), 0, SEEK_SET);
}

std::string readAll(const Descriptor& file) {
  ::lseek(file.get(), 0, SEEK_SET);
  std::string text;
  std::array<char, 4096> buffer{};
  while (true) {
    const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
    if (count <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

// In a process group of its own, with three descriptors and no signal blocked.
pid_t start(const std::vector<std::string>& command, const Descriptor& input,
            const Descriptor& output) {
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, input.get(), STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&files, output.get(), STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);

  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &pipe);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  pid_t process = 0;
  const int result =
      posix_spawnp(&process, arguments.front(), &files, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (result != 0) throw std::runtime_error(command.front() + " is not installed");
  return process;
}

bool endsWithin(pid_t process, std::chrono::milliseconds limit) {
  const Descriptor handle(::pidfd_open(process, 0));
  pollfd ended{handle.get(), POLLIN, 0};
  return ::poll(&ended, 1, static_cast<int>(limit.count())) == 1;
}

}  // namespace

std::string outputOf(const std::vector<std::string>& command, std::string_view input,
                     std::chrono::milliseconds limit) {
  const Descriptor in = memoryFile();
  const Descriptor out = memoryFile();
  writeAll(in, input);
  const pid_t process = start(command, in, out);
  const bool ended = endsWithin(process, limit);
  if (!ended) ::kill(-process, SIGKILL);
  int status = 0;
  ::waitpid(process, &status, 0);
  if (!ended) throw std::runtime_error(command.front() + " took too long");
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error(command.front() + " failed");
  return readAll(out);
}

}  // namespace quillo::service
