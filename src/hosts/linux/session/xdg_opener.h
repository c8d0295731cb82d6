// Opening things with the user's own programs.
#pragma once

#include "platform/opener.h"

namespace quillo::linux_host {

// Starts xdg-open and does not wait for it; false when it is not installed.
class XdgOpener final : public Opener {
 public:
  bool openFile(const FilePath& path) override;
  bool openURL(std::string_view url) override;
};

}  // namespace quillo::linux_host
