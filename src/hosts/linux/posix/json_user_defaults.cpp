#include "hosts/linux/posix/json_user_defaults.h"

#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

#include "base/bytes.h"
#include "base/iso8601.h"
#include "hosts/linux/posix/file_replacement.h"
#include "hosts/linux/posix/posix_file_manager.h"

namespace quillo::linux_host {
namespace {

constexpr const char* dataKey = "$data";

std::optional<TextDictionary> asDictionary(const Json& value) {
  if (!value.is_object()) return std::nullopt;
  TextDictionary dictionary;
  for (const auto& [key, text] : value.items()) {
    if (!text.is_string()) return std::nullopt;
    dictionary.emplace(key, text.get<std::string>());
  }
  return dictionary;
}

std::optional<std::string> asText(const Json& value) {
  if (!value.is_string()) return std::nullopt;
  return value.get<std::string>();
}

// Every element through `read`, or nothing.
template <class T>
std::optional<std::vector<T>> elements(const Json* array,
                                       std::optional<T> (*read)(const Json& element)) {
  if (!array || !array->is_array()) return std::nullopt;
  std::vector<T> values;
  for (const Json& element : *array) {
    auto value = read(element);
    if (!value) return std::nullopt;
    values.push_back(std::move(*value));
  }
  return values;
}

std::string pretty(const Json& values) {
  return values.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

JsonUserDefaults::JsonUserDefaults(FilePath file, MainThread& mainThread, const Clock& clock,
                                   Log& log)
    : file_(std::move(file)), mainThread_(mainThread), clock_(clock), log_(log) {
  load();
}

JsonUserDefaults::~JsonUserDefaults() {
  if (pendingWrite_ || isWriteFailing_) writeNow();
}

void JsonUserDefaults::load() {
  std::error_code error;
  const auto status = std::filesystem::symlink_status(file_, error);
  if (!std::filesystem::exists(status)) return;
  auto contents = PosixFileManager({}).read(file_);
  if (!contents) return setAside("cannot be read");
  auto values = parseJson(*contents);
  if (!values || !values->is_object()) return setAside("is not a JSON object");
  values_ = std::move(*values);
  written_ = std::move(*contents);
}

void JsonUserDefaults::setAside(std::string_view problem) {
  FilePath kept = file_;
  kept += ".damaged-" + iso8601(clock_.now());
  std::error_code error;
  std::filesystem::rename(file_, kept, error);
  log_.log("settings", file_.string() + " " + std::string(problem) + "; " +
                           (error ? "it could not be set aside: " + error.message()
                                  : "it is kept as " + kept.filename().string()));
}

const Json* JsonUserDefaults::find(std::string_view key) const {
  const auto found = values_.find(std::string(key));
  return found == values_.end() || found->is_null() ? nullptr : &*found;
}

bool JsonUserDefaults::contains(std::string_view key) const {
  return find(key) != nullptr;
}

std::optional<std::string> JsonUserDefaults::text(std::string_view key) const {
  const Json* value = find(key);
  return value ? asText(*value) : std::nullopt;
}

std::optional<bool> JsonUserDefaults::boolean(std::string_view key) const {
  const Json* value = find(key);
  if (!value || !value->is_boolean()) return std::nullopt;
  return value->get<bool>();
}

std::optional<std::int64_t> JsonUserDefaults::integer(std::string_view key) const {
  const Json* value = find(key);
  if (!value || !value->is_number_integer()) return std::nullopt;
  const bool isTooLarge =
      value->is_number_unsigned() &&
      value->get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int64_t>::max()};
  if (isTooLarge) return std::nullopt;
  return value->get<std::int64_t>();
}

std::optional<double> JsonUserDefaults::number(std::string_view key) const {
  const Json* value = find(key);
  if (!value || !value->is_number()) return std::nullopt;
  return value->get<double>();
}

std::optional<Bytes> JsonUserDefaults::data(std::string_view key) const {
  const Json* value = find(key);
  if (!value || !value->is_object() || value->size() != 1) return std::nullopt;
  const auto encoded = value->find(dataKey);
  if (encoded == value->end() || !encoded->is_string()) return std::nullopt;
  return bytesFromBase64(encoded->get_ref<const std::string&>());
}

std::optional<std::vector<std::string>> JsonUserDefaults::texts(std::string_view key) const {
  return elements<std::string>(find(key), asText);
}

std::optional<std::vector<TextDictionary>> JsonUserDefaults::dictionaries(
    std::string_view key) const {
  return elements<TextDictionary>(find(key), asDictionary);
}

void JsonUserDefaults::setText(std::string_view key, std::string_view value) {
  set(key, value);
}
void JsonUserDefaults::setBoolean(std::string_view key, bool value) {
  set(key, value);
}
void JsonUserDefaults::setInteger(std::string_view key, std::int64_t value) {
  set(key, value);
}
void JsonUserDefaults::setNumber(std::string_view key, double value) {
  set(key, value);
}
void JsonUserDefaults::setData(std::string_view key, const Bytes& value) {
  set(key, Json{{dataKey, base64(value)}});
}
void JsonUserDefaults::setTexts(std::string_view key, const std::vector<std::string>& value) {
  set(key, Json(value));
}
void JsonUserDefaults::setDictionaries(std::string_view key,
                                       const std::vector<TextDictionary>& value) {
  Json array = Json::array();
  for (const TextDictionary& dictionary : value) array.push_back(Json(dictionary));
  set(key, std::move(array));
}

void JsonUserDefaults::set(std::string_view key, Json value) {
  values_[std::string(key)] = std::move(value);
  writeSoon();
}

void JsonUserDefaults::remove(std::string_view key) {
  values_.erase(std::string(key));
  writeSoon();
}

void JsonUserDefaults::writeSoon() {
  if (pendingWrite_) return;
  pendingWrite_ = std::make_shared<bool>(true);
  mainThread_.post([this, pending = std::weak_ptr(pendingWrite_)] {
    if (pending.lock()) writeNow();
  });
}

void JsonUserDefaults::writeNow() {
  pendingWrite_.reset();
  std::string contents = pretty(values_);
  if (contents == written_) return;
  makePrivateDirectory(file_.parent_path());
  if (!replaceFile(file_, contents, Durability::processCrash)) {
    const std::string reason = std::strerror(errno);
    if (!std::exchange(isWriteFailing_, true))
      log_.log("settings", "settings cannot be written and will be lost at exit: " + reason);
    return;
  }
  isWriteFailing_ = false;
  written_ = std::move(contents);
  sync_.post([file = file_] { syncFile(file); });
}

}  // namespace quillo::linux_host
