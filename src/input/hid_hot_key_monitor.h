// Chords and modifiers by the keyboards themselves: nothing is kept from the application, but left
// and right are told apart, and Fn is seen.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "base/log.h"
#include "base/main_thread.h"
#include "input/shortcut_model.h"
#include "platform/hid_keyboards.h"
#include "platform/permissions.h"

namespace quillo {

// Main thread. Bindings and observers may be set while stopped; an action runs in a turn of its
// own, and must bear that another route reports the same press.
class MacHIDHotKeyMonitor {
 public:
  // Matches exactly these modifiers with the key.
  struct Binding {
    std::int64_t keyUsage = 0;
    ShortcutModifiers modifiers;
    std::function<void()> action;
  };
  // Gets all keys that are down, Fn as `fnUsage`, after each change of a modifier or of Fn.
  using ModifierObserver = std::function<void(const std::set<std::int64_t>& downUsages)>;

  MacHIDHotKeyMonitor(MainThread& mainThread, Permissions& permissions, HIDKeyboards& keyboards,
                      Log& log);

  // True when the keyboards are open, also when they were before.
  bool start();
  // Forgets which keys are down.
  void stop();
  bool isRunning() const { return manager_ != nullptr; }

  void bind(std::string_view id, Binding binding);
  void unbind(std::string_view id);
  void observeModifiers(std::string_view id, ModifierObserver observer);
  void stopObservingModifiers(std::string_view id);
  // Without bindings and observers.
  void stopIfUnused();

 private:
  void handle(const HIDValue& value);
  void notifyObservers() const;
  void fireBindingsOf(std::int64_t usage);
  bool isRepeatOf(const std::string& id);

  MainThread& mainThread_;
  Permissions& permissions_;
  HIDKeyboards& keyboards_;
  Log& log_;
  std::unique_ptr<HIDKeyboards::Manager> manager_;
  std::map<std::string, Binding, std::less<>> bindings_;
  std::map<std::string, ModifierObserver, std::less<>> modifierObservers_;
  std::set<std::int64_t> downUsages_;
  std::map<std::string, MonotonicTime, std::less<>> lastFireByID_;
};

}  // namespace quillo
