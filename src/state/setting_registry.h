// The settings of the program by the keys under which they are stored.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/user_defaults.h"

namespace quillo {

// A setting of whatever type. Main thread only.
class StoredSetting {
 public:
  virtual ~StoredSetting() = default;
  StoredSetting(const StoredSetting&) = delete;
  StoredSetting& operator=(const StoredSetting&) = delete;

  const char* key() const { return key_; }
  // Writes the value to any store, under the key.
  virtual void writeTo(UserDefaults& store) const = 0;
  // Assigns what any store holds under the key. False, and nothing changes, when that is nothing or
  // of another type.
  virtual bool takeFrom(const UserDefaults& store) = 0;

 protected:
  explicit StoredSetting(const char* key) : key_(key) {}

 private:
  const char* key_;
};

// Each setting adds itself when it is made, and is not asked for once it has gone. Main thread
// only.
class SettingRegistry {
 public:
  // The store outlives the settings.
  explicit SettingRegistry(UserDefaults& defaults) : defaults_(defaults) {
    settings_.reserve(usualCount);
  }
  SettingRegistry(const SettingRegistry&) = delete;
  SettingRegistry& operator=(const SettingRegistry&) = delete;

  UserDefaults& defaults() const { return defaults_; }
  void add(StoredSetting& setting) { settings_.push_back(&setting); }

  // In the order in which they were made.
  const std::vector<StoredSetting*>& settings() const { return settings_; }
  // Null when no setting has this key.
  StoredSetting* setting(std::string_view key) const {
    for (StoredSetting* each : settings_)
      if (each->key() == key) return each;
    return nullptr;
  }

 private:
  static constexpr std::size_t usualCount = 40;

  UserDefaults& defaults_;
  std::vector<StoredSetting*> settings_;
};

}  // namespace quillo
