#include "hosts/linux/posix/file_descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace quillo::linux_host {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

FileDescriptor::~FileDescriptor() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool FileDescriptor::writeAll(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace quillo::linux_host
