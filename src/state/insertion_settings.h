// How a finished text gets to where the user writes.
#pragma once

#include "base/published.h"
#include "state/setting_group.h"

namespace quillo {

// Main thread only.
class InsertionSettings : private SettingGroup {
 public:
  explicit InsertionSettings(SettingRegistry& registry) : SettingGroup(registry) {}

  Setting<bool> autoPaste = boolean("mac.autoPaste", true);
  Setting<bool> escInserts = boolean("mac.escInserts", false);
  Setting<bool> validateTranslation = boolean("validateTranslation", false);
  Published<bool> showPreview{storedOr(defaults(), "showPreview", true)};  // never written back
};

}  // namespace quillo
