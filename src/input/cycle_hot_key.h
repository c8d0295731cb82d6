// The chord of the user's choice that goes to the next writing profile, by every route at once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "base/main_thread.h"
#include "input/debounce.h"
#include "input/global_hot_key.h"
#include "input/hid_hot_key_monitor.h"
#include "input/hot_key_tap.h"
#include "platform/event_monitors.h"
#include "platform/key_event.h"

namespace quillo {

// Main thread.
class CycleHotKey {
 public:
  CycleHotKey(MainThread& mainThread, MacHotKeyTap& tap, GlobalHotKey& hotKey,
              MacHIDHotKeyMonitor& hidMonitor, EventMonitors& eventMonitors);

  // Takes the place of an earlier chord on every route. `modifiers` are bits of hot_key_modifiers.
  // One press is one call of `action`, however many routes see it. False when no route works.
  bool bindCyclePair(std::int64_t keyCode, const std::string& character, std::int64_t modifiers,
                     std::function<void()> action);

 private:
  struct Pair {
    std::int64_t keyCode;
    std::string character;  // lower case
    std::uint64_t eventFlags;
    std::function<void()> action;

    bool matches(const KeyEvent& event) const;
    void act(const KeyEvent& event) const;
  };

  bool bindTap(const Pair& pair);
  bool bindHotKey(const Pair& pair);
  bool bindHIDMonitor(const Pair& pair);
  bool addMonitors(const Pair& pair);

  MacHotKeyTap& tap_;
  GlobalHotKey& hotKey_;
  MacHIDHotKeyMonitor& hidMonitor_;
  EventMonitors& eventMonitors_;
  Debounce debounce_;
  std::shared_ptr<void> globalMonitor_;
  std::shared_ptr<void> localMonitor_;
};

}  // namespace quillo
