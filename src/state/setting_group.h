// What the groups of settings have in common.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "state/list_setting.h"
#include "state/setting.h"

namespace quillo {

// Makes the settings of a group from what is stored.
class SettingGroup {
 protected:
  explicit SettingGroup(SettingRegistry& registry) : registry_(registry) {}
  ~SettingGroup() = default;

  UserDefaults& defaults() const { return registry_.defaults(); }
  Setting<std::string> text(const char* key, std::string fallback) {
    return Setting<std::string>::stored(registry_, key, std::move(fallback));
  }
  Setting<bool> boolean(const char* key, bool fallback) {
    return Setting<bool>::stored(registry_, key, fallback);
  }
  Setting<std::int64_t> integer(const char* key, std::int64_t fallback) {
    return Setting<std::int64_t>::stored(registry_, key, fallback);
  }
  ListSetting<std::string> texts(const char* key) {
    return ListSetting<std::string>::stored(registry_, key);
  }
  DictionaryList dictionaries(const char* key) { return DictionaryList::stored(registry_, key); }

  SettingRegistry& registry_;
};

}  // namespace quillo
