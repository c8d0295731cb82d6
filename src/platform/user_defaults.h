// The settings store.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace quillo {

using TextDictionary = std::map<std::string, std::string>;

// A typed key-value store. Absent, false and 0 are three things; reading one type where another is
// stored gives nothing, but that a stored integer reads as a double. A write is seen by the next
// read at once. Main thread only.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual bool contains(std::string_view key) const = 0;
  virtual std::optional<std::string> text(std::string_view key) const = 0;
  virtual std::optional<bool> boolean(std::string_view key) const = 0;
  virtual std::optional<std::int64_t> integer(std::string_view key) const = 0;
  virtual std::optional<double> number(std::string_view key) const = 0;
  virtual std::optional<Bytes> data(std::string_view key) const = 0;
  // Nothing when any element is of another type.
  virtual std::optional<std::vector<std::string>> texts(std::string_view key) const = 0;
  virtual std::optional<std::vector<TextDictionary>> dictionaries(std::string_view key) const = 0;

  virtual void setText(std::string_view key, std::string_view value) = 0;
  virtual void setBoolean(std::string_view key, bool value) = 0;
  virtual void setInteger(std::string_view key, std::int64_t value) = 0;
  virtual void setNumber(std::string_view key, double value) = 0;
  virtual void setData(std::string_view key, const Bytes& value) = 0;
  virtual void setTexts(std::string_view key, const std::vector<std::string>& value) = 0;
  virtual void setDictionaries(std::string_view key, const std::vector<TextDictionary>& value) = 0;
  // Removing is not writing an empty value.
  virtual void remove(std::string_view key) = 0;
};

}  // namespace quillo
