// The keys that the user chose.
#pragma once

#include <cstdint>
#include <string>

#include "state/cycle_hot_key_preset.h"
#include "state/setting_group.h"

namespace quillo {

// Main thread only.
class ShortcutSettings : private SettingGroup {
 public:
  explicit ShortcutSettings(SettingRegistry& registry);

  Setting<std::string> toggleShortcut = text("mac.toggleShortcut", "ctrl_opt_space");
  Setting<std::string> activationMode = text("mac.activationMode", "toggle");  // or "hold"
  Setting<std::string> holdShortcut = text("mac.holdShortcut", "ctrl_opt");
  // Together one of the presets.
  Setting<std::int64_t> cycleHotKeyKeyCode =
      integer("mac.cycleHotKeyKeyCode", defaultCycleHotKey.keyCode);
  Setting<std::int64_t> cycleHotKeyModifiers =
      integer("mac.cycleHotKeyModifiers", defaultCycleHotKey.modifiers);
};

}  // namespace quillo
