// Where a file lies, and why it cannot be used.
#pragma once

#include <filesystem>

namespace quillo {

using FilePath = std::filesystem::path;

enum class FileFailure {
  absent,   // there is none, or no directory for it
  noRoom,   // the disk is full
  refused,  // any other reason: it is not the user's, not of that kind, taken, damaged
};

}  // namespace quillo
