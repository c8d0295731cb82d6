// Settings as a scenario writes them: in the store before the launch, and by the user later.
#pragma once

#include "hosts/simulated/storage/memory_user_defaults.h"
#include "simulation/scenarios/json_cursor.h"
#include "state/setting_registry.h"

namespace quillo::sim {

// Stores texts, Bools, whole numbers, other numbers, arrays of text and arrays of dictionaries of
// text. {"data": text} is stored as these bytes, {"data": array} as its JSON, {"foreign": true} as
// a value of a type that no reading fits, and null takes the value away.
void storeSetting(simulated::MemoryUserDefaults& defaults, const std::string& key,
                  const JsonCursor& value);
// As storeSetting would have taken it; null when absent.
Json storedSetting(const UserDefaults& defaults, const std::string& key);

// The user changes a setting in the program, to a value as storeSetting takes it.
void changeSetting(const SettingRegistry& settings, const std::string& key,
                   const JsonCursor& value);

}  // namespace quillo::sim
