#include "simulation/scenarios/setting_values.h"

#include <algorithm>

namespace quillo::sim {
namespace {

bool isArrayOf(const Json& value, bool (Json::*isElement)() const noexcept) {
  return value.is_array() &&
         std::ranges::all_of(value, [&](const Json& element) { return (element.*isElement)(); });
}

std::vector<TextDictionary> dictionariesOf(const JsonCursor& value) {
  std::vector<TextDictionary> dictionaries;
  for (const JsonCursor& element : value.elements()) {
    TextDictionary dictionary;
    for (const auto& [key, member] : element.members()) dictionary[key] = member.text();
    dictionaries.push_back(std::move(dictionary));
  }
  return dictionaries;
}

void storeOddly(simulated::MemoryUserDefaults& defaults, const std::string& key,
                const JsonCursor& value) {
  value.allowOnly({"data", "foreign"});
  if (value.json().size() != 1) value.refuse("either \"data\" or \"foreign\" is expected");
  if (const auto data = value.find("data"))
    return defaults.setData(key, data->json().is_array() ? encodeJson(data->json()) : data->text());
  if (!value.at("foreign").boolean()) value.refuse("only true makes sense here");
  defaults.setForeignValue(key);
}

}  // namespace

void storeSetting(simulated::MemoryUserDefaults& defaults, const std::string& key,
                  const JsonCursor& value) {
  const Json& json = value.json();
  if (json.is_object()) {
    storeOddly(defaults, key, value);
  } else if (json.is_null()) {
    defaults.remove(key);
  } else if (json.is_string()) {
    defaults.setText(key, value.text());
  } else if (json.is_boolean()) {
    defaults.setBoolean(key, value.boolean());
  } else if (json.is_number_integer()) {
    defaults.setInteger(key, value.integer());
  } else if (json.is_number()) {
    defaults.setNumber(key, value.number());
  } else if (isArrayOf(json, &Json::is_string)) {
    defaults.setTexts(key, value.texts());
  } else if (isArrayOf(json, &Json::is_object)) {
    defaults.setDictionaries(key, dictionariesOf(value));
  } else {
    value.refuse("no setting has a value of this kind");
  }
}

Json storedSetting(const UserDefaults& defaults, const std::string& key) {
  if (const auto text = defaults.text(key)) return *text;
  if (const auto boolean = defaults.boolean(key)) return *boolean;
  if (const auto integer = defaults.integer(key)) return *integer;
  if (const auto number = defaults.number(key)) return *number;
  if (const auto data = defaults.data(key)) return parseJson(*data).value_or(Json(*data));
  if (const auto texts = defaults.texts(key)) return *texts;
  if (const auto dictionaries = defaults.dictionaries(key)) return *dictionaries;
  return nullptr;
}

void changeSetting(const SettingRegistry& settings, const std::string& key,
                   const JsonCursor& value) {
  StoredSetting* const setting = settings.setting(key);
  if (!setting) value.refuse("the user can change no such setting");
  simulated::MemoryUserDefaults chosen;
  storeSetting(chosen, key, value);
  if (!setting->takeFrom(chosen)) value.refuse("this setting takes no such value");
}

}  // namespace quillo::sim
