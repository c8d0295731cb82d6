// Opening things with the user's own programs.
#pragma once

#include "platform/opener.h"

namespace quillo::linux_host {

// Starts xdg-open.
class XdgOpener final : public Opener {
 public:
  Result<void, OpenerFailure> openFile(const FilePath& path) override;
  Result<void, OpenerFailure> openURL(std::string_view url) override;
};

}  // namespace quillo::linux_host
