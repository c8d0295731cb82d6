// Lists of the user's own records as JSON, read with patience.
#pragma once

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

// The UUID under "id", or a new one.
inline std::string lenientId(const Json& object, Random& random) {
  const auto stored = canonicalUuid(lenientText(object, "id").value_or(""));
  return stored ? *stored : random.newUuid();
}

// Nothing when `json` is no array of objects.
template <class Record>
std::optional<std::vector<Record>> decodeRecords(std::string_view json, Random& random,
                                                 Record (*decode)(const Json&, Random&)) {
  const auto array = parseJson(json);
  if (!array || !array->is_array()) return std::nullopt;
  std::vector<Record> records;
  for (const Json& element : *array) {
    if (!element.is_object()) return std::nullopt;
    records.push_back(decode(element, random));
  }
  return records;
}

template <class Record>
Bytes encodeRecords(const std::vector<Record>& records, Json (*encode)(const Record&)) {
  Json array = Json::array();
  for (const Record& record : records) array.push_back(encode(record));
  return encodeJson(array);
}

}  // namespace quillo
