// Chords by an event tap: seen before the focused application, and kept from it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/log.h"
#include "base/main_thread.h"
#include "platform/event_taps.h"
#include "platform/key_event.h"
#include "platform/permissions.h"

namespace quillo {

// Main thread. Bindings may be set while stopped; an action runs in a turn of its own, and must
// bear that another route reports the same press.
class MacHotKeyTap {
 public:
  // Matches exactly these modifiers with the key at `keyCode`, or with the key that types
  // `character` (lower case) in the current layout.
  struct Binding {
    std::int64_t keyCode = 0;
    std::optional<std::string> character;
    std::uint64_t modifiers = 0;  // event flags
    std::function<void()> action;
  };

  MacHotKeyTap(MainThread& mainThread, Permissions& permissions, EventTaps& eventTaps, Log& log);

  // True when the tap runs, also when it ran before.
  bool start();
  void stop();
  bool isRunning() const { return tap_ != nullptr; }

  void bind(std::string_view id, Binding binding);
  void unbind(std::string_view id);
  void stopIfUnused();

 private:
  TapVerdict handleKeyDown(const KeyEvent& event);
  const Binding* bindingFor(const KeyEvent& event) const;

  MainThread& mainThread_;
  Permissions& permissions_;
  EventTaps& eventTaps_;
  Log& log_;
  std::map<std::string, Binding, std::less<>> bindings_;
  std::unique_ptr<EventTaps::Tap> tap_;
};

}  // namespace quillo
