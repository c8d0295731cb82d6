#include "state/shortcut_settings.h"

namespace quillo {

ShortcutSettings::ShortcutSettings(SettingRegistry& registry) : SettingGroup(registry) {
  if (isCycleHotKeyPreset(cycleHotKeyKeyCode, cycleHotKeyModifiers)) return;
  cycleHotKeyKeyCode = defaultCycleHotKey.keyCode;
  cycleHotKeyModifiers = defaultCycleHotKey.modifiers;
}

}  // namespace quillo
