#include "hosts/linux/posix/process_memory.h"

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace quillo::linux_host {
namespace {

constexpr int heaps = 2;
constexpr int ownMappingFrom = 128 << 10;  // bytes of a block
constexpr int trimmedFrom = 256 << 10;     // bytes that are free at the heap's end

// Of one library, or of the program itself. Nobody writes to what cannot be written, so the file
// holds all of it; code that was made at run time belongs to no library.
int releaseLibrary(dl_phdr_info* library, std::size_t, void*) {
  const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  for (int i = 0; i < library->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = library->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) continue;
    const std::uintptr_t begin = library->dlpi_addr + segment.p_vaddr;
    const std::uintptr_t firstPage = begin / pageSize * pageSize;
    ::madvise(reinterpret_cast<void*>(firstPage), begin + segment.p_memsz - firstPage,
              MADV_DONTNEED);
  }
  return 0;
}

}  // namespace

void boundHeap() {
  ::mallopt(M_ARENA_MAX, heaps);
  ::mallopt(M_MMAP_THRESHOLD, ownMappingFrom);
  ::mallopt(M_TRIM_THRESHOLD, trimmedFrom);
}

void releaseLoadedPages() {
  ::dl_iterate_phdr(releaseLibrary, nullptr);
}

}  // namespace quillo::linux_host
