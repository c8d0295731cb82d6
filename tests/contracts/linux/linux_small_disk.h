// A disk that is full: files of this process cannot grow beyond a limit.
#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <optional>

#include "platform/file_path.h"

namespace quillo::contracts {

class SmallDisk {
 public:
  explicit SmallDisk(FilePath folder) : folder_(std::move(folder)) {
    std::signal(SIGXFSZ, SIG_IGN);  // a write fails instead
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() { leaveRoomFor(std::nullopt); }

  // The largest file below the folder may grow by so many bytes, and others up to its size.
  void leaveRoomFor(std::optional<std::int64_t> bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur =
        bytes ? static_cast<rlim_t>(largestFile() + *bytes) : static_cast<rlim_t>(limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
  }

 private:
  std::int64_t largestFile() const {
    std::int64_t largest = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_))
      if (entry.is_regular_file())
        largest = std::max(largest, static_cast<std::int64_t>(entry.file_size()));
    return largest;
  }

  const FilePath folder_;
};

}  // namespace quillo::contracts
