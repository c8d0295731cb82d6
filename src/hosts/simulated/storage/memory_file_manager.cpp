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

bool MemoryFileManager::isDirectory(const FilePath& path) const {
  const Entry* entry = find(path);
  return entry && entry->isDirectory;
}

bool MemoryFileManager::isReadable(const FilePath& path) const {
  return unreadable_.empty() || !isCovered(path.lexically_normal(), unreadable_);
}

bool MemoryFileManager::isWritable(const FilePath& path) const {
  if (!isDirectory(path.parent_path())) return false;
  return unwritable_.empty() || !isCovered(path.lexically_normal(), unwritable_);
}

bool MemoryFileManager::exists(const FilePath& path) const {
  return find(path) != nullptr;
}

std::optional<std::int64_t> MemoryFileManager::size(const FilePath& path) const {
  const Entry* file = isReadable(path) ? findFile(path) : nullptr;
  return file ? std::optional(file->size()) : std::nullopt;
}

std::optional<Bytes> MemoryFileManager::read(const FilePath& path) const {
  const Entry* file = isReadable(path) ? findFile(path) : nullptr;
  return file ? std::optional(file->bytes) : std::nullopt;
}

std::vector<std::string> MemoryFileManager::list(const FilePath& directory) const {
  std::vector<std::string> names;
  if (!isReadable(directory)) return names;
  const FilePath parent = (directory / "").lexically_normal().parent_path();
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

bool MemoryFileManager::createDirectory(const FilePath& path) {
  FilePath made;
  for (const FilePath& part : path.lexically_normal()) {
    made /= part;
    if (isDirectory(made)) continue;
    if (exists(made) || !isWritable(made)) return false;
    entries_[made] = Entry{.isDirectory = true};
  }
  return true;
}

bool MemoryFileManager::createEmpty(const FilePath& path) {
  return !isDirectory(path) && writeAtomically(path, {});
}

bool MemoryFileManager::append(const FilePath& path, const Bytes& bytes) {
  if (!findFile(path) || !isWritable(path)) return false;
  const bool torn = std::exchange(tearNext_, false);
  const Bytes written = torn ? bytes.substr(0, bytes.size() / 2) : bytes;
  if (!take(static_cast<std::int64_t>(written.size()))) return false;
  entries_.at(path.lexically_normal()).bytes += written;
  return !torn;
}

bool MemoryFileManager::writeAtomically(const FilePath& path, const Bytes& bytes) {
  if (!isWritable(path) || isDirectory(path)) return false;
  if (std::exchange(tearNext_, false)) return false;
  // Old and new contents exist beside each other until the rename.
  if (!take(static_cast<std::int64_t>(bytes.size()))) return false;
  Entry& file = entries_[path.lexically_normal()];
  freeBytes_ += file.size();
  file = Entry{.bytes = bytes};
  return true;
}

bool MemoryFileManager::move(const FilePath& from, const FilePath& to) {
  const FilePath source = from.lexically_normal();
  const FilePath target = to.lexically_normal();
  if (!exists(source) || !isWritable(source) || !isWritable(target)) return false;
  if (isAtOrBelow(target, source) || exists(target)) return false;
  std::map<FilePath, Entry> moved;
  for (auto& [path, entry] : entries_) {
    if (isAtOrBelow(path, source))
      moved.emplace(path == source ? target : target / path.lexically_relative(source),
                    std::move(entry));
  }
  std::erase_if(entries_, [&](const auto& item) { return isAtOrBelow(item.first, source); });
  entries_.merge(moved);
  return true;
}

bool MemoryFileManager::remove(const FilePath& path) {
  const auto removed = entries_.find(path.lexically_normal());
  if (removed == entries_.end() || !isWritable(path)) return false;
  if (removed->second.isDirectory && !list(path).empty()) return false;
  freeBytes_ += removed->second.size();
  entries_.erase(removed);
  return true;
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
