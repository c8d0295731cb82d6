// Modifier keys that record while they are held, or toggle at each press.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>

#include "base/main_thread.h"
#include "input/dictation_controls.h"
#include "input/hid_hot_key_monitor.h"
#include "input/shortcut_model.h"
#include "platform/event_monitors.h"
#include "platform/key_event.h"
#include "state/shortcut_settings.h"

namespace quillo {

// Two routes see the keys, and either may be missing or miss an event: a key is held while one of
// them says so. Main thread.
class MacPushToTalk {
 public:
  MacPushToTalk(MainThread& mainThread, EventMonitors& eventMonitors,
                MacHIDHotKeyMonitor& hidMonitor, const ShortcutSettings& settings,
                DictationControls& controls);
  MacPushToTalk(const MacPushToTalk&) = delete;
  MacPushToTalk& operator=(const MacPushToTalk&) = delete;
  ~MacPushToTalk();

  // Each press of `shortcut` toggles. Without one, the hold shortcut of the settings records while
  // it is held. To be chosen between stop(), which takes it back, and start().
  void setTapShortcut(std::optional<HoldShortcut> shortcut) { tapShortcut_ = shortcut; }
  void start();
  // Ends a recording that is held.
  void stop();

 private:
  void handleFlagsChanged(const KeyEvent& event);
  void handleHIDModifiers(const std::set<std::int64_t>& downUsages);
  bool isHeld(HoldShortcut shortcut, std::uint64_t chordFlags) const;

  // Whether the settings still ask for what this was started for.
  bool isInMode() const;
  HoldShortcut effectiveShortcut() const;

  void mergeRoutes();
  void keysWentDown();
  void keysCameUp();
  void beginHold();
  void endHold();

  MainThread& mainThread_;
  EventMonitors& eventMonitors_;
  MacHIDHotKeyMonitor& hidMonitor_;
  const ShortcutSettings& settings_;
  DictationControls& controls_;

  std::optional<HoldShortcut> tapShortcut_;
  std::shared_ptr<void> globalMonitor_;
  std::shared_ptr<void> localMonitor_;
  bool holding_ = false;   // by either route
  bool didStart_ = false;  // this hold was long enough, and asked to record
  Timer pendingStart_;
  bool appKitHoldActive_ = false;
  bool hidHoldActive_ = false;
  bool rightOptionDown_ = false;
  bool fnDown_ = false;
};

}  // namespace quillo
