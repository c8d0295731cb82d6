#include "hosts/linux/posix/code_pages.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace quillo::linux_host {
namespace {

// Of one library, or of the program itself. Nobody writes to its code, so the file holds all of it;
// code that was made at run time belongs to no library.
int releaseLibrary(dl_phdr_info* library, std::size_t, void*) {
  const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  for (int i = 0; i < library->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = library->dlpi_phdr[i];
    const bool isCode = segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0;
    if (!isCode || (segment.p_flags & PF_W) != 0) continue;
    const std::uintptr_t begin = library->dlpi_addr + segment.p_vaddr;
    const std::uintptr_t firstPage = begin / pageSize * pageSize;
    ::madvise(reinterpret_cast<void*>(firstPage), begin + segment.p_memsz - firstPage,
              MADV_DONTNEED);
  }
  return 0;
}

}  // namespace

void releaseCodePages() {
  ::dl_iterate_phdr(releaseLibrary, nullptr);
}

}  // namespace quillo::linux_host
