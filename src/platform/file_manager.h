// The user's files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "platform/file_path.h"

namespace quillo {

enum class UserDirectory { caches, applicationSupport, library };

// Any thread. Failures are values; what they mean is for the caller.
class FileManager {
 public:
  virtual ~FileManager() = default;

  // Nothing when the system has no such directory.
  virtual std::optional<FilePath> directory(UserDirectory which) const = 0;
  virtual FilePath temporaryDirectory() const = 0;

  virtual bool exists(const FilePath& path) const = 0;
  // Bytes on disk; nothing when the file cannot be looked at.
  virtual std::optional<std::int64_t> size(const FilePath& path) const = 0;
  virtual std::optional<Bytes> read(const FilePath& path) const = 0;
  // Names in a directory, sorted; empty when it cannot be read.
  virtual std::vector<std::string> list(const FilePath& directory) const = 0;

  // With its parents; true when the directory stands afterwards.
  virtual bool createDirectory(const FilePath& path) = 0;
  virtual bool createEmpty(const FilePath& path) = 0;
  // The file must exist.
  virtual bool append(const FilePath& path, const Bytes& bytes) = 0;
  // A temporary file, then a rename: readers see the old or the new contents, never a mixture.
  virtual bool writeAtomically(const FilePath& path, const Bytes& bytes) = 0;
  virtual bool move(const FilePath& from, const FilePath& to) = 0;
  virtual bool remove(const FilePath& path) = 0;
};

}  // namespace quillo
