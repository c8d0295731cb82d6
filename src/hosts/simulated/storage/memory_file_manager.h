// The user's files in memory.
#pragma once

#include <limits>
#include <map>
#include <set>

#include "platform/file_manager.h"

namespace quillo::simulated {

// Paths are absolute.
class MemoryFileManager final : public FileManager {
 public:
  MemoryFileManager();

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

  // --- Driver ---

  // The space that is left; files that are removed give theirs back.
  void setFreeBytes(std::int64_t count) { freeBytes_ = count; }
  // A full disk, or one that never fills.
  void setFull(bool full) { freeBytes_ = full ? 0 : unlimited; }
  // The next append writes its first half and fails; the next atomic write leaves the old contents.
  void tearNextWrite() { tearNext_ = true; }
  // Reading, or changing, fails at `path` and below it until heal().
  void makeUnreadable(const FilePath& path) { unreadable_.insert(path.lexically_normal()); }
  void makeUnwritable(const FilePath& path) { unwritable_.insert(path.lexically_normal()); }
  void heal(const FilePath& path);
  // The system names no such directory.
  void withholdDirectory(UserDirectory which) { withheld_.insert(which); }
  // Every file's path, sorted.
  std::vector<FilePath> allFiles() const;

 private:
  static constexpr std::int64_t unlimited = std::numeric_limits<std::int64_t>::max() / 2;

  struct Entry {
    bool isDirectory = false;
    Bytes bytes{};

    std::int64_t size() const { return static_cast<std::int64_t>(bytes.size()); }
  };

  const Entry* find(const FilePath& path) const;
  const Entry* findFile(const FilePath& path) const;
  Result<const Entry*, FileFailure> findReadable(const FilePath& path) const;
  bool isReadable(const FilePath& path) const;
  // May something be made or changed at `path`: its directory stands and nothing forbids it.
  Result<void, FileFailure> checkWritable(const FilePath& path) const;
  bool isDirectory(const FilePath& path) const;
  // False when there is no room for `growth` more bytes.
  bool take(std::int64_t growth);
  void makeParents(const FilePath& directory);

  std::map<FilePath, Entry> entries_;
  std::set<FilePath> unreadable_;
  std::set<FilePath> unwritable_;
  std::set<UserDirectory> withheld_;
  std::int64_t freeBytes_ = unlimited;
  bool tearNext_ = false;
};

}  // namespace quillo::simulated
