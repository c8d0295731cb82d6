// Settings that are lists, edited element by element. Every edit writes the whole list.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "state/setting.h"

namespace quillo {

// An index outside the list is ignored, unwritten.
template <class Element>
class ListSetting : public Setting<std::vector<Element>> {
 public:
  using List = std::vector<Element>;
  using Setting<List>::Setting;
  using Setting<List>::operator=;

  static ListSetting stored(SettingRegistry& registry, const char* key) {
    return ListSetting(registry, key, storedOr<List>(registry.defaults(), key, {}));
  }

  void append(Element element) {
    List list = this->get();
    list.push_back(std::move(element));
    *this = std::move(list);
  }

  void removeEntry(std::size_t index) {
    if (index >= this->get().size()) return;
    List list = this->get();
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
    *this = std::move(list);
  }

  void edit(std::size_t index, const std::function<void(Element&)>& change) {
    if (index >= this->get().size()) return;
    List list = this->get();
    change(list[index]);
    *this = std::move(list);
  }
};

// Records as plain dictionaries of text to text. Keys that nobody knows stay where they are.
class DictionaryList : public ListSetting<TextDictionary> {
 public:
  using ListSetting::ListSetting;
  using ListSetting::operator=;

  static DictionaryList stored(SettingRegistry& registry, const char* key) {
    return DictionaryList(registry, key, storedOr<List>(registry.defaults(), key, {}));
  }

  void updateEntry(std::size_t index, std::string_view key, std::string value) {
    edit(index, [&](TextDictionary& entry) { entry[std::string(key)] = std::move(value); });
  }
};

// The text under `key`, or empty text.
inline std::string_view textUnder(const TextDictionary& dictionary, const std::string& key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? std::string_view() : std::string_view(found->second);
}

}  // namespace quillo
