// JSON with the fields in the order of writing, read strictly (records of the service) or
// leniently (the user's own settings).
#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace quillo {

using Json = nlohmann::ordered_json;

// Nothing when the text is not JSON.
std::optional<Json> parseJson(std::string_view text);
// Without white space; bytes that are not UTF-8 become U+FFFD.
std::string encodeJson(const Json& value);

// Strict reading of one object. Unknown keys are ignored; null reads as absent; 1.0 reads as an
// integer and 1.5 does not. Everything that does not fit throws DecodingError with its path.
class JsonReader {
 public:
  // `text` must be a JSON object.
  static JsonReader parseObject(std::string_view text);
  // `value` outlives the reader.
  JsonReader(const Json& value, std::string path);

  std::string text(std::string_view key) const;
  std::int64_t integer(std::string_view key) const;
  double number(std::string_view key) const;
  bool boolean(std::string_view key) const;
  JsonReader object(std::string_view key) const;
  std::vector<JsonReader> objects(std::string_view key) const;

  std::optional<std::string> optionalText(std::string_view key) const;
  std::optional<std::int64_t> optionalInteger(std::string_view key) const;
  std::optional<double> optionalNumber(std::string_view key) const;
  std::optional<bool> optionalBoolean(std::string_view key) const;
  std::optional<JsonReader> optionalObject(std::string_view key) const;
  std::optional<std::vector<std::string>> optionalTexts(std::string_view key) const;
  std::optional<std::vector<JsonReader>> optionalObjects(std::string_view key) const;

 private:
  explicit JsonReader(std::shared_ptr<const Json> owned);
  const Json* find(std::string_view key) const;
  const Json& require(std::string_view key) const;
  std::string pathOf(std::string_view key) const;

  std::shared_ptr<const Json> owned_;
  const Json* value_;
  std::string path_;
};

// Strict reading of an array of objects.
std::vector<JsonReader> jsonObjects(const Json& array);

// Lenient reading: a missing or mistyped field is absent.
std::optional<std::string> lenientText(const Json& object, std::string_view key);
std::optional<bool> lenientBoolean(const Json& object, std::string_view key);

}  // namespace quillo
