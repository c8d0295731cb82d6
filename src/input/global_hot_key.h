// Chords that the system delivers to this program alone. They need no permission.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "base/log.h"
#include "input/shortcut_model.h"
#include "platform/hot_keys.h"

namespace quillo {

// Main thread.
class GlobalHotKey {
 public:
  GlobalHotKey(HotKeys& hotKeys, Log& log) : hotKeys_(hotKeys), log_(log) {}

  // Takes the place of an earlier hot key of this id, also when it fails. `modifiers` are bits of
  // hot_key_modifiers. False when the system refuses, as for a chord that another program holds.
  bool registerHotKey(HotKeyId id, std::uint32_t keyCode, std::uint32_t modifiers,
                      std::function<void()> action);
  void unregister(HotKeyId id);
  void unregisterAll();

 private:
  void pressed(HotKeyId id) const;

  HotKeys& hotKeys_;
  Log& log_;
  std::map<HotKeyId, std::function<void()>> actions_;
  std::map<HotKeyId, std::shared_ptr<void>> hotKeyRefs_;
};

}  // namespace quillo
