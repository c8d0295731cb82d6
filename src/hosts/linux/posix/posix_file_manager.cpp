#include "hosts/linux/posix/posix_file_manager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "hosts/linux/posix/file_descriptor.h"
#include "hosts/linux/posix/file_replacement.h"

namespace quillo::linux_host {
namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateDirectory = 0700;

std::optional<FilePath> below(const std::optional<FilePath>& home, const char* folder) {
  if (!home) return std::nullopt;
  return *home / folder;
}

FileFailure failureOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return FileFailure::absent;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return FileFailure::noRoom;
    default:
      return FileFailure::refused;
  }
}

// The reason of the call before, where one failed.
Result<void, FileFailure> done(bool succeeded) {
  if (succeeded) return {};
  return failureOf(errno);
}

// Not every file system knows the flag; there the check before the rename has to do.
bool renameWithoutReplacing(const FilePath& from, const FilePath& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  return ::access(to.c_str(), F_OK) != 0 && ::rename(from.c_str(), to.c_str()) == 0;
}

// A rename does not cross file systems.
Result<void, FileFailure> copyThenRemove(const FilePath& from, const FilePath& to) {
  std::error_code error;
  if (!std::filesystem::copy_file(from, to, std::filesystem::copy_options::none, error)) {
    const FileFailure failure = failureOf(error.value());
    if (error != std::errc::file_exists) std::filesystem::remove(to, error);
    return failure;
  }
  ::chmod(to.c_str(), privateFile);
  return done(::unlink(from.c_str()) == 0);
}

}  // namespace

bool makePrivateDirectory(const FilePath& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return true;
  if (path.has_parent_path() && path.parent_path() != path &&
      !makePrivateDirectory(path.parent_path()))
    return false;
  return ::mkdir(path.c_str(), privateDirectory) == 0 || std::filesystem::is_directory(path, error);
}

std::optional<FilePath> PosixFileManager::directory(UserDirectory which) const {
  std::optional<FilePath> found;
  switch (which) {
    case UserDirectory::caches:
      found = below(directories_.cacheHome, "quillo");
      break;
    case UserDirectory::applicationSupport:
      found = directories_.dataHome;
      break;
    case UserDirectory::library:
      found = directories_.stateHome;
      break;
  }
  // One that cannot be made fails whoever writes there.
  if (found) makePrivateDirectory(*found);
  return found;
}

FilePath PosixFileManager::temporaryDirectory() const {
  std::error_code error;
  FilePath chosen = std::filesystem::temp_directory_path(error);
  return error ? FilePath("/tmp") : chosen;
}

bool PosixFileManager::exists(const FilePath& path) const {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

Result<std::int64_t, FileFailure> PosixFileManager::size(const FilePath& path) const {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) return failureOf(errno);
  return status.st_size;
}

Result<Bytes, FileFailure> PosixFileManager::read(const FilePath& path) const {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status{};
  if (!file || ::fstat(file.get(), &status) != 0) return failureOf(errno);
  if (!S_ISREG(status.st_mode)) return FileFailure::refused;
  Bytes bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return failureOf(errno);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

Result<std::vector<std::string>, FileFailure> PosixFileManager::list(
    const FilePath& directory) const {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error))
    names.push_back(entry->path().filename().string());
  if (error) return failureOf(error.value());
  std::ranges::sort(names);
  return names;
}

Result<void, FileFailure> PosixFileManager::createDirectory(const FilePath& path) {
  return done(makePrivateDirectory(path));
}

Result<void, FileFailure> PosixFileManager::createEmpty(const FilePath& path) {
  const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
  return done(static_cast<bool>(FileDescriptor(::open(path.c_str(), flags, privateFile))));
}

Result<void, FileFailure> PosixFileManager::append(const FilePath& path, const Bytes& bytes) {
  const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
  struct stat before{};
  if (!file || ::fstat(file.get(), &before) != 0) return failureOf(errno);
  const auto written = done(file.writeAll(bytes));
  if (written) return written;
  // Half a record is worse than none. A file that cannot even be cut stays as it is.
  [[maybe_unused]] const int cut = ::ftruncate(file.get(), before.st_size);
  return written;
}

Result<void, FileFailure> PosixFileManager::writeAtomically(const FilePath& path,
                                                            const Bytes& bytes) {
  return done(replaceFile(path, bytes, Durability::powerCut));
}

Result<void, FileFailure> PosixFileManager::move(const FilePath& from, const FilePath& to) {
  if (renameWithoutReplacing(from, to)) return {};
  return errno == EXDEV ? copyThenRemove(from, to) : failureOf(errno);
}

Result<void, FileFailure> PosixFileManager::remove(const FilePath& path) {
  return done(std::remove(path.c_str()) == 0);
}

}  // namespace quillo::linux_host
