#include "hosts/linux/session/linux_session.h"

#include <cstdlib>
#include <string_view>

namespace quillo::linux_host {
namespace {

std::string_view environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

}  // namespace

std::optional<Words> LinuxSession::limitation() const {
  if (environment("WAYLAND_DISPLAY").empty() && environment("XDG_SESSION_TYPE") != "wayland")
    return std::nullopt;
  return words(
      "In this Wayland session the shortcut and pasting reach X11 programs only; elsewhere "
      "dictate from this menu, and paste by hand where the desktop shares its clipboard.");
}

}  // namespace quillo::linux_host
