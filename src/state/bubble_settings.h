// Where and how texts of other programs may be edited in place.
#pragma once

#include <string>

#include "state/setting_group.h"

namespace quillo {

// Main thread only.
class BubbleSettings : private SettingGroup {
 public:
  explicit BubbleSettings(SettingRegistry& registry) : SettingGroup(registry) {}

  Setting<bool> selectionBubbleEnabled = boolean("mac.selectionBubbleEnabled", false);
  Setting<bool> compactSelectionBubble = boolean("mac.compactSelectionBubble", true);
  Setting<bool> fieldBadgeEnabled = boolean("mac.fieldBadgeEnabled", true);
  Setting<bool> sawSelectionBubbleIntro = boolean("mac.sawSelectionBubbleIntro", false);
  ListSetting<std::string> bubbleMutedContexts = texts("mac.bubbleMutedContexts");
};

}  // namespace quillo
