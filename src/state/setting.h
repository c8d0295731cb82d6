// A setting: a published value that lies in the settings store.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/published.h"
#include "platform/user_defaults.h"
#include "state/setting_registry.h"

namespace quillo {

// How a value of type T lies in the settings store. `read` gives nothing when the key is absent or
// holds another type.
template <class T>
struct StoredForm;

namespace detail {
template <auto Read, auto Write>
struct StoredWith {
  static auto read(const UserDefaults& defaults, std::string_view key) {
    return (defaults.*Read)(key);
  }
  template <class T>
  static void write(UserDefaults& defaults, std::string_view key, const T& value) {
    (defaults.*Write)(key, value);
  }
};
}  // namespace detail

template <>
struct StoredForm<std::string> : detail::StoredWith<&UserDefaults::text, &UserDefaults::setText> {};
template <>
struct StoredForm<bool> : detail::StoredWith<&UserDefaults::boolean, &UserDefaults::setBoolean> {};
template <>
struct StoredForm<std::int64_t>
    : detail::StoredWith<&UserDefaults::integer, &UserDefaults::setInteger> {};
template <>
struct StoredForm<std::vector<std::string>>
    : detail::StoredWith<&UserDefaults::texts, &UserDefaults::setTexts> {};
template <>
struct StoredForm<std::vector<TextDictionary>>
    : detail::StoredWith<&UserDefaults::dictionaries, &UserDefaults::setDictionaries> {};

template <class T>
T storedOr(const UserDefaults& defaults, std::string_view key, T fallback) {
  return StoredForm<T>::read(defaults, key).value_or(std::move(fallback));
}

// Assignment writes the value to the store, then publishes it: an observer finds both changed.
// Construction adds the setting to its registry, and never writes. Main thread only.
template <class T>
class Setting : public StoredSetting, private Published<T> {
 public:
  // Holds `initial` until it is assigned. The store and the text of `key` outlive the setting.
  Setting(SettingRegistry& registry, const char* key, T initial)
      : StoredSetting(key), Published<T>(std::move(initial)), defaults_(registry.defaults()) {
    registry.add(*this);
  }

  // What is stored under `key`, else `fallback`.
  static Setting stored(SettingRegistry& registry, const char* key, T fallback) {
    return Setting(registry, key, storedOr<T>(registry.defaults(), key, std::move(fallback)));
  }

  using Published<T>::get;
  using Published<T>::operator const T&;
  using Published<T>::operator->;
  using Published<T>::observe;
  using typename Published<T>::Observer;

  Setting& operator=(T value) {
    StoredForm<T>::write(defaults_, key(), value);
    Published<T>::operator=(std::move(value));
    return *this;
  }

  void writeTo(UserDefaults& store) const override { StoredForm<T>::write(store, key(), get()); }
  bool takeFrom(const UserDefaults& store) override {
    auto value = StoredForm<T>::read(store, key());
    if (value) *this = *std::move(value);
    return value.has_value();
  }

 private:
  UserDefaults& defaults_;
};

}  // namespace quillo
