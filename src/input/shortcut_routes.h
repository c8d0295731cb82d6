// A fixed chord by every route that can see it.
#pragma once

#include <functional>

#include "input/global_hot_key.h"
#include "input/hid_hot_key_monitor.h"
#include "input/hot_key_tap.h"
#include "input/shortcut_model.h"

namespace quillo {

// Main thread.
class ShortcutRoutes {
 public:
  ShortcutRoutes(MacHotKeyTap& tap, GlobalHotKey& hotKey, MacHIDHotKeyMonitor& hidMonitor)
      : tap_(tap), hotKey_(hotKey), hidMonitor_(hidMonitor) {}

  // The tap, or else a registered hot key, and the keyboards beside them. `action` is called once a
  // route for one press.
  void bind(const Chord& chord, std::function<void()> action);
  // Detectors that nobody needs any more are stopped.
  void unbind(const Chord& chord);

 private:
  MacHotKeyTap& tap_;
  GlobalHotKey& hotKey_;
  MacHIDHotKeyMonitor& hidMonitor_;
};

}  // namespace quillo
