// The user's other programs, by what they open.
#pragma once

#include <string_view>

#include "base/result.h"
#include "platform/file_path.h"

namespace quillo {

enum class OpenerFailure {
  noAddress,   // what is to be opened has no address
  noPrograms,  // the desktop cannot start programs for it
};

// Opens a file or an address with the user's default application, and does not wait for it: whether
// that could open it is not told. Main thread; no call blocks.
class Opener {
 public:
  virtual ~Opener() = default;
  virtual Result<void, OpenerFailure> openFile(const FilePath& path) = 0;
  // An absolute URL.
  virtual Result<void, OpenerFailure> openURL(std::string_view url) = 0;
};

}  // namespace quillo
