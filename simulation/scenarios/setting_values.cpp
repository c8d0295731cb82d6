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

// These are kept as data that hold JSON.
bool isKeptAsData(const std::string& key) {
  return key == "mac.writingProfiles" || key == "mac.promptInstructions";
}

void storeDamaged(simulated::MemoryUserDefaults& defaults, const std::string& key,
                  const JsonCursor& value) {
  value.allowOnly({"data", "foreign"});
  if (value.json().size() != 1) value.refuse("either \"data\" or \"foreign\" is expected");
  if (const auto data = value.find("data")) return defaults.setData(key, data->text());
  if (!value.at("foreign").boolean()) value.refuse("only true makes sense here");
  defaults.setForeignValue(key);
}

constexpr std::pair<const char*, Setting<std::string> MacAppState::*> textSettings[] = {
    {"inputLanguage", &MacAppState::inputLanguage},
    {"outputLanguage", &MacAppState::outputLanguage},
    {"transformMode", &MacAppState::transformMode},
    {"tone", &MacAppState::tone},
    {"formatStyle", &MacAppState::formatStyle},
    {"mac.toggleShortcut", &MacAppState::toggleShortcut},
    {"mac.activationMode", &MacAppState::activationMode},
    {"mac.holdShortcut", &MacAppState::holdShortcut},
    {"mac.appearance", &MacAppState::appearance},
    {"mac.microphoneUID", &MacAppState::microphoneUID},
};
constexpr std::pair<const char*, Setting<std::int64_t> MacAppState::*> numbers[] = {
    {"mac.historyRetentionDays", &MacAppState::historyRetentionDays},
    {"mac.cycleHotKeyKeyCode", &MacAppState::cycleHotKeyKeyCode},
    {"mac.cycleHotKeyModifiers", &MacAppState::cycleHotKeyModifiers},
};
constexpr std::pair<const char*, Setting<bool> MacAppState::*> switches[] = {
    {"mac.showInDock", &MacAppState::showInDock},
    {"mac.selectionBubbleEnabled", &MacAppState::selectionBubbleEnabled},
    {"mac.autoPaste", &MacAppState::autoPaste},
    {"mac.escInserts", &MacAppState::escInserts},
    {"mac.noiseReduction", &MacAppState::noiseReduction},
    {"mac.discreetMode", &MacAppState::discreetMode},
    {"mac.historyEnabled", &MacAppState::historyEnabled},
    {"mac.soundsEnabled", &MacAppState::soundsEnabled},
    {"validateTranslation", &MacAppState::validateTranslation},
};
constexpr std::pair<const char*, DictionaryList MacAppState::*> dictionarySettings[] = {
    {"dictionaryReplacements", &MacAppState::dictionaryReplacements},
    {"dictionaryGlossary", &MacAppState::dictionaryGlossary},
    {"snippets", &MacAppState::snippets},
};

template <class Table, class Assign>
bool assignFrom(const Table& table, const std::string& key, const Assign& assign) {
  for (const auto& [name, setting] : table) {
    if (key != name) continue;
    assign(setting);
    return true;
  }
  return false;
}

}  // namespace

void storeSetting(simulated::MemoryUserDefaults& defaults, const std::string& key,
                  const JsonCursor& value) {
  const Json& json = value.json();
  if (json.is_object()) {
    storeDamaged(defaults, key, value);
  } else if (json.is_null()) {
    defaults.remove(key);
  } else if (isKeptAsData(key)) {
    value.elements();
    defaults.setData(key, encodeJson(json));
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

void changeSetting(MacAppState& state, const std::string& key, const JsonCursor& value) {
  if (key == "dictionaryVocabulary") {
    state.dictionaryVocabulary = value.texts();
    return;
  }
  const bool isKnown =
      assignFrom(textSettings, key, [&](auto setting) { state.*setting = value.text(); }) ||
      assignFrom(numbers, key, [&](auto setting) { state.*setting = value.integer(); }) ||
      assignFrom(switches, key, [&](auto setting) { state.*setting = value.boolean(); }) ||
      assignFrom(dictionarySettings, key,
                 [&](auto setting) { state.*setting = dictionariesOf(value); });
  if (!isKnown) value.refuse("the user can change no such setting");
}

}  // namespace quillo::sim
