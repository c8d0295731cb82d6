// Whether a compositor blends the windows of this display.
#pragma once

#include "hosts/linux/qt/selection_owner_watch.h"

namespace quillo::linux_host {

// By the owner of the compositing manager selection (Extended Window Manager Hints). Made after
// QGuiApplication; main thread. Displays other than X11 always blend.
class CompositorWatch {
 public:
  bool isCompositing() const { return !owner_.isX11() || owner_.hasOwner(); }
  // Calls `changed` until the result is dropped.
  [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed) {
    return owner_.observe(std::move(changed));
  }

 private:
  // Of the first X screen; more than one is a thing of the past.
  SelectionOwnerWatch owner_{"_NET_WM_CM_S0"};
};

}  // namespace quillo::linux_host
