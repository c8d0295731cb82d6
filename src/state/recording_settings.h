// How speech is recorded, and what is heard of it.
#pragma once

#include <string>

#include "state/setting_group.h"

namespace quillo {

// Main thread only.
class RecordingSettings : private SettingGroup {
 public:
  explicit RecordingSettings(SettingRegistry& registry);

  Setting<bool> noiseReduction = boolean("mac.noiseReduction", true);
  Setting<bool> discreetMode = boolean("mac.discreetMode", false);
  Setting<bool> soundsEnabled = boolean("mac.soundsEnabled", true);
  Setting<std::string> microphoneUID = text("mac.microphoneUID", "");  // empty: the default one
};

}  // namespace quillo
