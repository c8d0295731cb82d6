// An open file of the system, closed by its owner.
#pragma once

#include <string_view>
#include <utility>

namespace quillo::linux_host {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  ~FileDescriptor();

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

  // All of `bytes`, or false with errno; a part may have been written then.
  bool writeAll(std::string_view bytes) const;

 private:
  int descriptor_ = -1;
};

}  // namespace quillo::linux_host
