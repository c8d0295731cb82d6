#include "hosts/linux/posix/file_replacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "hosts/linux/posix/file_descriptor.h"

namespace quillo::linux_host {
namespace {

FilePath withoutLinks(const FilePath& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(path, error)) return path;
  const FilePath target = std::filesystem::canonical(path, error);
  return error ? path : target;
}

void syncPath(const FilePath& path, int flags) {
  const FileDescriptor opened(::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags));
  if (opened) ::fsync(opened.get());
}

}  // namespace

bool replaceFile(const FilePath& path, std::string_view bytes, Durability durability) {
  const FilePath target = withoutLinks(path);
  std::string temporary = target.string() + ".XXXXXX";
  const FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));  // mode 0600
  if (!file) return false;
  const bool written = file.writeAll(bytes) &&
                       (durability == Durability::processCrash || ::fsync(file.get()) == 0) &&
                       ::rename(temporary.c_str(), target.c_str()) == 0;
  if (!written) {
    const int reason = errno;
    ::unlink(temporary.c_str());
    errno = reason;
    return false;
  }
  if (durability == Durability::powerCut) syncPath(target.parent_path(), O_DIRECTORY);
  return true;
}

void syncFile(const FilePath& path) {
  const FilePath target = withoutLinks(path);
  syncPath(target, 0);
  syncPath(target.parent_path(), O_DIRECTORY);
}

}  // namespace quillo::linux_host
