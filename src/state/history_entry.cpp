#include "state/history_entry.h"

#include "base/identifiers.h"
#include "base/iso8601.h"
#include "base/json.h"

namespace quillo {
namespace {

Json encodeEntry(const MacHistoryEntry& entry) {
  Json json = {
      {"id", entry.id},
      {"date", iso8601(entry.date)},
      {"rawTranscript", entry.rawTranscript},
      {"finalText", entry.finalText},
      {"inputLanguage", entry.inputLanguage},
      {"outputLanguage", entry.outputLanguage},
  };
  if (entry.targetAppName) json["targetAppName"] = *entry.targetAppName;
  return json;
}

template <class T>
T required(std::optional<T> value, const char* field) {
  if (!value) throw DecodingError(field, "is malformed");
  return *std::move(value);
}

MacHistoryEntry decodeEntry(const JsonReader& json) {
  return {
      .id = required(canonicalUuid(json.text("id")), "id"),
      .date = required(dateFromIso8601(json.text("date")), "date"),
      .rawTranscript = json.text("rawTranscript"),
      .finalText = json.text("finalText"),
      .inputLanguage = json.text("inputLanguage"),
      .outputLanguage = json.text("outputLanguage"),
      .targetAppName = json.optionalText("targetAppName"),
  };
}

}  // namespace

Bytes encodeHistory(const HistoryEntries& entries) {
  Json array = Json::array();
  for (const auto& entry : entries) array.push_back(encodeEntry(*entry));
  return encodeJson(array);
}

std::optional<HistoryEntries> decodeHistory(std::string_view json) {
  const auto array = parseJson(json);
  if (!array) return std::nullopt;
  try {
    HistoryEntries entries;
    for (const JsonReader& element : jsonObjects(*array))
      entries.push_back(std::make_shared<const MacHistoryEntry>(decodeEntry(element)));
    return entries;
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

}  // namespace quillo
