#include "hosts/simulated/storage/memory_user_defaults.h"

namespace quillo::simulated {
namespace {

template <class T>
std::optional<T> copyOf(const T* value) {
  return value ? std::optional<T>(*value) : std::nullopt;
}

}  // namespace

template <class T>
const T* MemoryUserDefaults::find(std::string_view key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? nullptr : std::get_if<T>(&found->second);
}

bool MemoryUserDefaults::contains(std::string_view key) const {
  return values_.contains(key);
}

std::optional<std::string> MemoryUserDefaults::text(std::string_view key) const {
  return copyOf(find<std::string>(key));
}

std::optional<bool> MemoryUserDefaults::boolean(std::string_view key) const {
  return copyOf(find<bool>(key));
}

std::optional<std::int64_t> MemoryUserDefaults::integer(std::string_view key) const {
  return copyOf(find<std::int64_t>(key));
}

std::optional<double> MemoryUserDefaults::number(std::string_view key) const {
  if (const auto whole = integer(key)) return static_cast<double>(*whole);
  return copyOf(find<double>(key));
}

std::optional<Bytes> MemoryUserDefaults::data(std::string_view key) const {
  const Data* data = find<Data>(key);
  return data ? std::optional(data->bytes) : std::nullopt;
}

// An empty array has no element of a wrong type: it reads as either kind.
std::optional<std::vector<std::string>> MemoryUserDefaults::texts(std::string_view key) const {
  const auto* other = find<std::vector<TextDictionary>>(key);
  if (other && other->empty()) return std::vector<std::string>();
  return copyOf(find<std::vector<std::string>>(key));
}

std::optional<std::vector<TextDictionary>> MemoryUserDefaults::dictionaries(
    std::string_view key) const {
  const auto* other = find<std::vector<std::string>>(key);
  if (other && other->empty()) return std::vector<TextDictionary>();
  return copyOf(find<std::vector<TextDictionary>>(key));
}

void MemoryUserDefaults::setText(std::string_view key, std::string_view value) {
  set(key, std::string(value));
}
void MemoryUserDefaults::setBoolean(std::string_view key, bool value) {
  set(key, value);
}
void MemoryUserDefaults::setInteger(std::string_view key, std::int64_t value) {
  set(key, value);
}
void MemoryUserDefaults::setNumber(std::string_view key, double value) {
  set(key, value);
}
void MemoryUserDefaults::setData(std::string_view key, const Bytes& value) {
  set(key, Data{value});
}
void MemoryUserDefaults::setTexts(std::string_view key, const std::vector<std::string>& value) {
  set(key, value);
}
void MemoryUserDefaults::setDictionaries(std::string_view key,
                                         const std::vector<TextDictionary>& value) {
  set(key, value);
}
void MemoryUserDefaults::setForeignValue(std::string_view key) {
  set(key, Foreign{});
}

void MemoryUserDefaults::remove(std::string_view key) {
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
  persist();
}

std::vector<std::string> MemoryUserDefaults::keys() const {
  std::vector<std::string> keys;
  for (const auto& [key, value] : values_) keys.push_back(key);
  return keys;
}

void MemoryUserDefaults::set(std::string_view key, Value value) {
  values_.insert_or_assign(std::string(key), std::move(value));
  persist();
}

void MemoryUserDefaults::persist() {
  if (!writesAreLost_) onDisk_ = values_;
}

}  // namespace quillo::simulated
