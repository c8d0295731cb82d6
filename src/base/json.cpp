#include "base/json.h"

#include <cmath>

namespace quillo {
namespace {

const Json* findKey(const Json& object, std::string_view key) {
  if (!object.is_object()) return nullptr;
  const auto found = object.find(std::string(key));
  if (found == object.end() || found->is_null()) return nullptr;
  return &*found;
}

std::string asText(const Json& value, const std::string& path) {
  if (!value.is_string()) throw DecodingError(path, "is not a text");
  return value.get<std::string>();
}

std::int64_t asInteger(const Json& value, const std::string& path) {
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX)
    throw DecodingError(path, "is too large for an integer");
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number_float()) {
    const double number = value.get<double>();
    if (std::trunc(number) == number && std::abs(number) < 9.2e18)
      return static_cast<std::int64_t>(number);
  }
  throw DecodingError(path, "is not an integer");
}

double asNumber(const Json& value, const std::string& path) {
  if (!value.is_number()) throw DecodingError(path, "is not a number");
  return value.get<double>();
}

bool asBoolean(const Json& value, const std::string& path) {
  if (!value.is_boolean()) throw DecodingError(path, "is not true or false");
  return value.get<bool>();
}

std::vector<JsonReader> asObjects(const Json& value, const std::string& path) {
  if (!value.is_array()) throw DecodingError(path, "is not an array");
  std::vector<JsonReader> readers;
  for (std::size_t i = 0; i < value.size(); ++i)
    readers.emplace_back(value[i], path + "[" + std::to_string(i) + "]");
  return readers;
}

template <class Read>
auto optionalField(const Json* value, Read read) -> std::optional<decltype(read(*value))> {
  if (!value) return std::nullopt;
  return read(*value);
}

}  // namespace

std::optional<Json> parseJson(std::string_view text) {
  Json parsed = Json::parse(text, nullptr, false);
  if (parsed.is_discarded()) return std::nullopt;
  return parsed;
}

std::string encodeJson(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

JsonReader JsonReader::parseObject(std::string_view text) {
  auto parsed = parseJson(text);
  if (!parsed) throw DecodingError("", "is not JSON");
  return JsonReader(std::make_shared<const Json>(std::move(*parsed)));
}

JsonReader::JsonReader(std::shared_ptr<const Json> owned)
    : owned_(std::move(owned)), value_(owned_.get()) {
  if (!value_->is_object()) throw DecodingError("", "is not an object");
}

JsonReader::JsonReader(const Json& value, std::string path)
    : value_(&value), path_(std::move(path)) {
  if (!value_->is_object()) throw DecodingError(path_, "is not an object");
}

std::string JsonReader::pathOf(std::string_view key) const {
  return path_.empty() ? std::string(key) : path_ + "." + std::string(key);
}
const Json* JsonReader::find(std::string_view key) const {
  return findKey(*value_, key);
}
const Json& JsonReader::require(std::string_view key) const {
  const Json* value = find(key);
  if (!value) throw DecodingError(pathOf(key), "is missing");
  return *value;
}

std::string JsonReader::text(std::string_view key) const {
  return asText(require(key), pathOf(key));
}
std::int64_t JsonReader::integer(std::string_view key) const {
  return asInteger(require(key), pathOf(key));
}
double JsonReader::number(std::string_view key) const {
  return asNumber(require(key), pathOf(key));
}
bool JsonReader::boolean(std::string_view key) const {
  return asBoolean(require(key), pathOf(key));
}
JsonReader JsonReader::object(std::string_view key) const {
  JsonReader reader(require(key), pathOf(key));
  reader.owned_ = owned_;
  return reader;
}
std::vector<JsonReader> JsonReader::objects(std::string_view key) const {
  auto readers = asObjects(require(key), pathOf(key));
  for (JsonReader& reader : readers) reader.owned_ = owned_;
  return readers;
}

std::optional<std::string> JsonReader::optionalText(std::string_view key) const {
  return optionalField(find(key), [&](const Json& v) { return asText(v, pathOf(key)); });
}
std::optional<std::int64_t> JsonReader::optionalInteger(std::string_view key) const {
  return optionalField(find(key), [&](const Json& v) { return asInteger(v, pathOf(key)); });
}
std::optional<double> JsonReader::optionalNumber(std::string_view key) const {
  return optionalField(find(key), [&](const Json& v) { return asNumber(v, pathOf(key)); });
}
std::optional<bool> JsonReader::optionalBoolean(std::string_view key) const {
  return optionalField(find(key), [&](const Json& v) { return asBoolean(v, pathOf(key)); });
}
std::optional<JsonReader> JsonReader::optionalObject(std::string_view key) const {
  if (!find(key)) return std::nullopt;
  return object(key);
}
std::optional<std::vector<std::string>> JsonReader::optionalTexts(std::string_view key) const {
  const Json* value = find(key);
  if (!value) return std::nullopt;
  if (!value->is_array()) throw DecodingError(pathOf(key), "is not an array");
  std::vector<std::string> texts;
  for (const Json& element : *value) texts.push_back(asText(element, pathOf(key)));
  return texts;
}

std::optional<std::vector<JsonReader>> JsonReader::optionalObjects(std::string_view key) const {
  if (!find(key)) return std::nullopt;
  return objects(key);
}

std::vector<JsonReader> jsonObjects(const Json& array) {
  return asObjects(array, "");
}

std::optional<std::string> lenientText(const Json& object, std::string_view key) {
  const Json* value = findKey(object, key);
  if (!value || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}
std::optional<bool> lenientBoolean(const Json& object, std::string_view key) {
  const Json* value = findKey(object, key);
  if (!value || !value->is_boolean()) return std::nullopt;
  return value->get<bool>();
}

}  // namespace quillo
