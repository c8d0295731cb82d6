// The user's files, in the directories of the XDG specification.
#pragma once

#include "hosts/linux/posix/xdg_directories.h"
#include "platform/file_manager.h"

namespace quillo::linux_host {

// What it makes is the user's alone: files 0600, directories 0700. Caches have a folder of the
// program's own; application support and library are the user's data and state homes.
class PosixFileManager final : public FileManager {
 public:
  explicit PosixFileManager(XdgDirectories directories) : directories_(std::move(directories)) {}

  // The directory is made when it is missing.
  std::optional<FilePath> directory(UserDirectory which) const override;
  FilePath temporaryDirectory() const override;
  bool exists(const FilePath& path) const override;
  Result<std::int64_t, FileFailure> size(const FilePath& path) const override;
  Result<Bytes, FileFailure> read(const FilePath& path) const override;
  Result<std::vector<std::string>, FileFailure> list(const FilePath& directory) const override;
  Result<void, FileFailure> createDirectory(const FilePath& path) override;
  Result<void, FileFailure> createEmpty(const FilePath& path) override;
  Result<void, FileFailure> append(const FilePath& path, const Bytes& bytes) override;
  Result<void, FileFailure> writeAtomically(const FilePath& path, const Bytes& bytes) override;
  Result<void, FileFailure> move(const FilePath& from, const FilePath& to) override;
  Result<void, FileFailure> remove(const FilePath& path) override;

 private:
  XdgDirectories directories_;
};

// With its parents, 0700 each; true when the directory stands afterwards.
bool makePrivateDirectory(const FilePath& path);

}  // namespace quillo::linux_host
