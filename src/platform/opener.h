// The user's other programs, by what they open.
#pragma once

#include <string_view>

#include "platform/file_path.h"

namespace quillo {

// Opens a file or an address with the user's default application. Main thread.
class Opener {
 public:
  virtual ~Opener() = default;
  virtual bool openFile(const FilePath& path) = 0;
  virtual bool openURL(std::string_view url) = 0;
};

}  // namespace quillo
