// What is kept of past dictations, and for how long.
#pragma once

#include <cstdint>

#include "state/setting_group.h"

namespace quillo {

// Main thread only.
class HistorySettings : private SettingGroup {
 public:
  explicit HistorySettings(SettingRegistry& registry) : SettingGroup(registry) {}

  Setting<bool> historyEnabled = boolean("mac.historyEnabled", true);
  // 0: for ever
  Setting<std::int64_t> historyRetentionDays = integer("mac.historyRetentionDays", 0);
};

}  // namespace quillo
