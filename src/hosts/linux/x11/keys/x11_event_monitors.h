// Keys on their way to other programs and to this one.
#pragma once

#include "base/main_thread.h"
#include "hosts/linux/x11/keys/x11_keyboard.h"
#include "platform/event_monitors.h"
#include "platform/key_event.h"

namespace quillo::linux_host {

// Main thread. Key codes are positions, characters those of the layout in use.
//
// Global monitors see the raw events, so they see keys that another program grabs as well, and of
// the repeats of a key that is held the last alone, when it goes up. Local monitors see the key
// events of this program's own windows, with their repeats; the marker field of a posted key does
// not reach those.
class X11EventMonitors final : public EventMonitors {
 public:
  // Both outlive this.
  X11EventMonitors(MainThread& mainThread, X11Keyboard& keyboard)
      : mainThread_(mainThread), keyboard_(keyboard) {}

  Result<std::shared_ptr<void>, EventMonitorFailure> addGlobalMonitor(
      KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) override;
  Result<std::shared_ptr<void>, EventMonitorFailure> addLocalMonitor(
      KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) override;

 private:
  MainThread& mainThread_;
  X11Keyboard& keyboard_;
};

}  // namespace quillo::linux_host
