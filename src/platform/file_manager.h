// The user's files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/result.h"
#include "platform/file_path.h"

namespace quillo {

enum class UserDirectory { caches, applicationSupport, library };

// Any thread. Each call blocks for as long as the disk takes; there is no limit to that.
class FileManager {
 public:
  virtual ~FileManager() = default;

  // Nothing when the system has no such directory.
  virtual std::optional<FilePath> directory(UserDirectory which) const = 0;
  virtual FilePath temporaryDirectory() const = 0;

  virtual bool exists(const FilePath& path) const = 0;
  // Bytes on disk.
  virtual Result<std::int64_t, FileFailure> size(const FilePath& path) const = 0;
  virtual Result<Bytes, FileFailure> read(const FilePath& path) const = 0;
  // Names in a directory, sorted.
  virtual Result<std::vector<std::string>, FileFailure> list(const FilePath& directory) const = 0;

  // With its parents. Done as well when it stands already.
  virtual Result<void, FileFailure> createDirectory(const FilePath& path) = 0;
  virtual Result<void, FileFailure> createEmpty(const FilePath& path) = 0;
  // The file must exist. On the real desktop a failed append leaves it as it was.
  virtual Result<void, FileFailure> append(const FilePath& path, const Bytes& bytes) = 0;
  // A temporary file, then a rename: readers see the old or the new contents, never a mixture.
  virtual Result<void, FileFailure> writeAtomically(const FilePath& path, const Bytes& bytes) = 0;
  // Never replaces an existing file.
  virtual Result<void, FileFailure> move(const FilePath& from, const FilePath& to) = 0;
  virtual Result<void, FileFailure> remove(const FilePath& path) = 0;
};

}  // namespace quillo
