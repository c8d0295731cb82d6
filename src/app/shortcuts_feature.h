// The shortcuts: the routes by which keys arrive, and what each chord does.
#pragma once

#include <vector>

#include "app/dictation_controls_adapter.h"
#include "app/host_ports.h"
#include "input/cycle_hot_key.h"
#include "input/dictation_shortcuts.h"
#include "input/global_hot_key.h"
#include "input/hid_hot_key_monitor.h"
#include "input/hot_key_tap.h"
#include "input/push_to_talk.h"
#include "input/shortcut_routes.h"
#include "state/app_state.h"

namespace quillo {

// Main thread.
class ShortcutsFeature {
 public:
  ShortcutsFeature(const HostPorts& ports, MacAppState& state, MacDictationController& dictation);

  DictationShortcuts& dictationShortcuts() { return shortcuts_; }
  GlobalHotKey& globalHotKey() { return globalHotKey_; }

 private:
  void applyChanges(const ShortcutSettings& settings);
  void bindCycleHotKey(MacAppState& state);

  DictationControlsAdapter dictationControls_;
  MacHotKeyTap hotKeyTap_;
  GlobalHotKey globalHotKey_;
  MacHIDHotKeyMonitor hidMonitor_;
  ShortcutRoutes routes_{hotKeyTap_, globalHotKey_, hidMonitor_};
  MacPushToTalk pushToTalk_;
  CycleHotKey cycleHotKey_;
  DictationShortcuts shortcuts_;
  std::vector<Subscription> effects_;
};

}  // namespace quillo
