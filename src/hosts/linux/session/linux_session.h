// Whether the session's own windows are X11's or Wayland's.
#pragma once

#include "platform/desktop_session.h"

namespace quillo::linux_host {

// In a Wayland session this program lives in its X server for old programs (Xwayland). That server
// grants a grab of a key, but while a Wayland window is in front no key comes to it, and no
// synthetic key goes from it to that window.
class LinuxSession final : public DesktopSession {
 public:
  std::optional<Words> limitation() const override;
};

}  // namespace quillo::linux_host
