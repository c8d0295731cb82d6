// Lists of the user's own records as JSON, read with patience.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/identifiers.h"
#include "base/json.h"
#include "platform/random.h"

namespace quillo {

// The UUID under "id", or empty text.
inline std::string lenientId(const Json& object) {
  return canonicalUuid(lenientText(object, "id").value_or("")).value_or("");
}

// Nothing when `json` is no array of objects.
template <class Record>
std::optional<std::vector<Record>> decodeRecords(std::string_view json,
                                                 Record (*decode)(const Json&)) {
  const auto array = parseJson(json);
  if (!array || !array->is_array()) return std::nullopt;
  std::vector<Record> records;
  for (const Json& element : *array) {
    if (!element.is_object()) return std::nullopt;
    records.push_back(decode(element));
  }
  return records;
}

// Gives an identifier to those that have none.
template <class Record>
void identify(std::vector<Record>& records, Random& random) {
  for (Record& record : records)
    if (record.id.empty()) record.id = random.newUuid();
}

// `records` when each has its identifier.
template <class Record>
std::optional<std::vector<Record>> identified(std::optional<std::vector<Record>> records) {
  const auto isUnknown = [](const Record& record) { return record.id.empty(); };
  if (records && std::ranges::any_of(*records, isUnknown)) return std::nullopt;
  return records;
}

template <class Record>
Bytes encodeRecords(const std::vector<Record>& records, Json (*encode)(const Record&)) {
  Json array = Json::array();
  for (const Record& record : records) array.push_back(encode(record));
  return encodeJson(array);
}

}  // namespace quillo
