#include "hosts/linux/code_pages.h"

#include <sys/mman.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>

namespace quillo::linux_host {

void releaseCodePages() {
  // A line of proc(5)'s maps: first-last access offset device inode path, the addresses in
  // hexadecimal.
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    std::istringstream fields(line);
    std::uintptr_t first = 0, last = 0;
    char dash = 0;
    std::string access, offset, device, inode, path;
    fields >> std::hex >> first >> dash >> last >> access >> offset >> device >> inode >> path;
    // Nobody writes to these pages, so the file holds all that was in them.
    const bool isCodeOfFile = access == "r-xp" && path.starts_with('/');
    if (isCodeOfFile) ::madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
  }
}

}  // namespace quillo::linux_host
