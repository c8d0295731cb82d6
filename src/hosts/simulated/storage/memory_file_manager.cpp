#include "hosts/simulated/storage/memory_file_manager.h"

#include <algorithm>
#include <utility>

namespace quillo::simulated {
namespace {

const char* pathOf(UserDirectory which) {
  switch (which) {
    case UserDirectory::caches:
      return "/home/ada/Caches";
    case UserDirectory::applicationSupport:
      return "/home/ada/Application Support";
    case UserDirectory::library:
      return "/home/ada/Library";
  }
  return "";
}

constexpr const char* temporaryPath = "/tmp";

bool isAtOrBelow(const FilePath& path, const FilePath& directory) {
  const auto [end, _] = std::mismatch(directory.begin(), directory.end(), path.begin(), path.end());
  return end == directory.end();
}

bool isCovered(const FilePath& path, const std::set<FilePath>& places) {
  return std::any_of(places.begin(), places.end(),
                     [&](const FilePath& place) { return isAtOrBelow(path, place); });
}

}  // namespace

MemoryFileManager::MemoryFileManager() {
  for (const auto which :
       {UserDirectory::caches, UserDirectory::applicationSupport, UserDirectory::library})
    makeParents(pathOf(which));
  makeParents(temporaryPath);
}

void MemoryFileManager::makeParents(const FilePath& directory) {
  FilePath path;
  for (const FilePath& part : directory) {
    path /= part;
    entries_.try_emplace(path, Entry{.isDirectory = true});
  }
}

std::optional<FilePath> MemoryFileManager::directory(UserDirectory which) const {
  if (withheld_.contains(which)) return std::nullopt;
  return pathOf(which);
}

FilePath MemoryFileManager::temporaryDirectory() const {
  return temporaryPath;
}

const MemoryFileManager::Entry* MemoryFileManager::find(const FilePath& path) const {
  const auto found = entries_.find(path.lexically_normal());
  return found == entries_.end() ? nullptr : &found->second;
}

const MemoryFileManager::Entry* MemoryFileManager::findFile(const FilePath& path) const {
  const Entry* entry = find(path);
  return entry && !entry->isDirectory ? entry : nullptr;
}

Result<const MemoryFileManager::Entry*, FileFailure> MemoryFileManager::findReadable(
    const FilePath& path) const {
  const Entry* entry = find(path);
  if (!entry) return FileFailure::absent;
  if (entry->isDirectory || !isReadable(path)) return FileFailure::refused;
  return entry;
}

bool MemoryFileManager::isDirectory(const FilePath& path) const {
  const Entry* entry = find(path);
  return entry && entry->isDirectory;
}

bool MemoryFileManager::isReadable(const FilePath& path) const {
  return unreadable_.empty() || !isCovered(path.lexically_normal(), unreadable_);
}

Result<void, FileFailure> MemoryFileManager::checkWritable(const FilePath& path) const {
  if (!isDirectory(path.parent_path())) return FileFailure::absent;
  if (!unwritable_.empty() && isCovered(path.lexically_normal(), unwritable_))
    return FileFailure::refused;
  return {};
}

bool MemoryFileManager::exists(const FilePath& path) const {
  return find(path) != nullptr;
}

Result<std::int64_t, FileFailure> MemoryFileManager::size(const FilePath& path) const {
  const auto file = findReadable(path);
  if (!file) return file.error();
  return (*file)->size();
}

Result<Bytes, FileFailure> MemoryFileManager::read(const FilePath& path) const {
  const auto file = findReadable(path);
  if (!file) return file.error();
  return (*file)->bytes;
}

Result<std::vector<std::string>, FileFailure> MemoryFileManager::list(
    const FilePath& directory) const {
  if (!isReadable(directory)) return FileFailure::refused;
  const FilePath parent = (directory / "").lexically_normal().parent_path();
  if (!isDirectory(parent)) return FileFailure::absent;
  std::vector<std::string> names;
  for (const auto& [path, entry] : entries_) {
    if (path != parent && path.parent_path() == parent) names.push_back(path.filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool MemoryFileManager::take(std::int64_t growth) {
  if (growth > freeBytes_) return false;
  freeBytes_ -= growth;
  return true;
}

Result<void, FileFailure> MemoryFileManager::createDirectory(const FilePath& path) {
  FilePath made;
  for (const FilePath& part : path.lexically_normal()) {
    made /= part;
    if (isDirectory(made)) continue;
    if (exists(made)) return FileFailure::refused;  // a file, where a directory is needed
    if (const auto writable = checkWritable(made); !writable) return writable;
    entries_[made] = Entry{.isDirectory = true};
  }
  return {};
}

Result<void, FileFailure> MemoryFileManager::createEmpty(const FilePath& path) {
  if (isDirectory(path)) return FileFailure::refused;
  return writeAtomically(path, {});
}

Result<void, FileFailure> MemoryFileManager::append(const FilePath& path, const Bytes& bytes) {
  if (!findFile(path)) return FileFailure::absent;
  if (const auto writable = checkWritable(path); !writable) return writable;
  const bool torn = std::exchange(tearNext_, false);
  const Bytes written = torn ? bytes.substr(0, bytes.size() / 2) : bytes;
  if (!take(static_cast<std::int64_t>(written.size()))) return FileFailure::noRoom;
  entries_.at(path.lexically_normal()).bytes += written;
  if (torn) return FileFailure::refused;
  return {};
}

Result<void, FileFailure> MemoryFileManager::writeAtomically(const FilePath& path,
                                                             const Bytes& bytes) {
  if (const auto writable = checkWritable(path); !writable) return writable;
  if (isDirectory(path) || std::exchange(tearNext_, false)) return FileFailure::refused;
  // Old and new contents exist beside each other until the rename.
  if (!take(static_cast<std::int64_t>(bytes.size()))) return FileFailure::noRoom;
  Entry& file = entries_[path.lexically_normal()];
  freeBytes_ += file.size();
  file = Entry{.bytes = bytes};
  return {};
}

Result<void, FileFailure> MemoryFileManager::move(const FilePath& from, const FilePath& to) {
  const FilePath source = from.lexically_normal();
  const FilePath target = to.lexically_normal();
  if (!exists(source)) return FileFailure::absent;
  for (const FilePath& path : {source, target})
    if (const auto writable = checkWritable(path); !writable) return writable;
  if (isAtOrBelow(target, source) || exists(target)) return FileFailure::refused;
  std::map<FilePath, Entry> moved;
  for (auto& [path, entry] : entries_) {
    if (isAtOrBelow(path, source))
      moved.emplace(path == source ? target : target / path.lexically_relative(source),
                    std::move(entry));
  }
  std::erase_if(entries_, [&](const auto& item) { return isAtOrBelow(item.first, source); });
  entries_.merge(moved);
  return {};
}

Result<void, FileFailure> MemoryFileManager::remove(const FilePath& path) {
  const auto removed = entries_.find(path.lexically_normal());
  if (removed == entries_.end()) return FileFailure::absent;
  if (const auto writable = checkWritable(path); !writable) return writable;
  if (removed->second.isDirectory && list(path) != std::vector<std::string>())
    return FileFailure::refused;
  freeBytes_ += removed->second.size();
  entries_.erase(removed);
  return {};
}

void MemoryFileManager::heal(const FilePath& path) {
  unreadable_.erase(path.lexically_normal());
  unwritable_.erase(path.lexically_normal());
}

std::vector<FilePath> MemoryFileManager::allFiles() const {
  std::vector<FilePath> files;
  for (const auto& [path, entry] : entries_) {
    if (!entry.isDirectory) files.push_back(path);
  }
  return files;
}

}  // namespace quillo::simulated
