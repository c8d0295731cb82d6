// Where a user's files lie (XDG Base Directory Specification, freedesktop.org).
#pragma once

#include <optional>

#include "platform/file_path.h"

namespace quillo::linux_host {

// Absolute paths, which need not exist. The four homes are absent only for a user without a home
// directory; the runtime directory is absent outside a login session.
struct XdgDirectories {
  std::optional<FilePath> cacheHome;
  std::optional<FilePath> configHome;
  std::optional<FilePath> dataHome;
  std::optional<FilePath> stateHome;
  std::optional<FilePath> runtimeDirectory;

  static XdgDirectories ofThisUser();
};

}  // namespace quillo::linux_host
