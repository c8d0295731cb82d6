#include "hosts/linux/posix/xdg_directories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace quillo::linux_host {
namespace {

// A relative path in the environment counts as unset.
std::optional<FilePath> absolutePath(const char* text) {
  if (!text || *text != '/') return std::nullopt;
  return FilePath(text);
}

std::optional<FilePath> homeDirectory() {
  if (auto home = absolutePath(std::getenv("HOME"))) return home;
  const passwd* user = getpwuid(getuid());
  return user ? absolutePath(user->pw_dir) : std::nullopt;
}

std::optional<FilePath> directory(const char* variable, const char* belowHome) {
  if (auto chosen = absolutePath(std::getenv(variable))) return chosen;
  if (auto home = homeDirectory()) return *home / belowHome;
  return std::nullopt;
}

}  // namespace

XdgDirectories XdgDirectories::ofThisUser() {
  return {directory("XDG_CACHE_HOME", ".cache"), directory("XDG_CONFIG_HOME", ".config"),
          directory("XDG_DATA_HOME", ".local/share"), directory("XDG_STATE_HOME", ".local/state"),
          absolutePath(std::getenv("XDG_RUNTIME_DIR"))};
}

}  // namespace quillo::linux_host
