#include "hosts/linux/posix/console_system_log.h"

#include <unistd.h>

#include <cerrno>
#include <string>

namespace quillo::linux_host {
namespace {

// A line that cannot be written is lost: there is nobody left to tell.
void writeLine(int descriptor, std::string_view line) {
  const std::string whole = std::string(line) + "\n";
  std::string_view left = whole;
  while (!left.empty()) {
    const ssize_t written = ::write(descriptor, left.data(), left.size());
    if (written < 0 && errno != EINTR) return;
    if (written > 0) left.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void ConsoleSystemLog::write(std::string_view line) {
  writeLine(STDERR_FILENO, line);
}
void ConsoleSystemLog::printToStandardOutput(std::string_view line) {
  writeLine(STDOUT_FILENO, line);
}

}  // namespace quillo::linux_host
