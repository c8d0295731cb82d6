#include "hosts/linux/posix/system_random.h"

#include <sys/random.h>

#include <cerrno>
#include <cstring>

#include "base/error.h"

namespace quillo::linux_host {

std::uint64_t SystemRandom::next() {
  std::uint64_t value = 0;
  // Requests of up to 256 bytes are never cut short (getrandom(2)).
  while (getrandom(&value, sizeof value, 0) != sizeof value) {
    if (errno != EINTR) throw SystemError({"getrandom", errno, std::strerror(errno)});
  }
  return value;
}

}  // namespace quillo::linux_host
