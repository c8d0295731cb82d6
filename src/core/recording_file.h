// Files of recordings: who deletes them, and how they are read.
#pragma once

#include <string>
#include <utility>

#include "base/error.h"
#include "platform/file_manager.h"

namespace quillo {

class FileReadError final : public Error {
 public:
  explicit FileReadError(const FilePath& path) : name_(path.filename().string()) {}
  std::string description() const override {
    return "The file \"" + name_ + "\" could not be read.";
  }

 private:
  std::string name_;
};

// A file that goes with its owner. A deletion that fails is ignored.
class OwnedFile {
 public:
  OwnedFile(FileManager& files, FilePath path) : files_(&files), path_(std::move(path)) {}
  OwnedFile(OwnedFile&& other) noexcept
      : files_(std::exchange(other.files_, nullptr)), path_(std::move(other.path_)) {}
  OwnedFile& operator=(OwnedFile&&) = delete;
  ~OwnedFile() {
    if (files_) files_->remove(path_);
  }

  const FilePath& path() const { return path_; }
  // Throws FileReadError.
  Bytes read() const {
    auto bytes = files_->read(path_);
    if (!bytes) throw FileReadError(path_);
    return std::move(*bytes);
  }

 private:
  FileManager* files_;
  FilePath path_;
};

}  // namespace quillo
