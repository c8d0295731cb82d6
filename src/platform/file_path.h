// Where a file lies.
#pragma once

#include <filesystem>

namespace quillo {

using FilePath = std::filesystem::path;

}  // namespace quillo
