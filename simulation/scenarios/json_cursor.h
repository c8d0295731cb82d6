// A value of a scenario and the place where it stands, read without any leniency.
#pragma once

#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/json.h"
#include "base/time.h"

namespace quillo::sim {

// The scenario says something that cannot be done. what() begins with the place.
class ScenarioError final : public std::runtime_error {
 public:
  ScenarioError(const std::string& place, const std::string& problem)
      : std::runtime_error(place + ": " + problem) {}
};

// Every reading of a value that does not fit throws ScenarioError. The text outlives its cursors.
class JsonCursor {
 public:
  JsonCursor(const Json& value, std::string path) : value_(&value), path_(std::move(path)) {}

  const Json& json() const { return *value_; }
  const std::string& path() const { return path_; }
  [[noreturn]] void refuse(const std::string& problem) const;

  // --- Objects ---
  // Refuses everything but an object with some of these keys.
  void allowOnly(std::initializer_list<std::string_view> keys) const;
  std::optional<JsonCursor> find(std::string_view key) const;
  JsonCursor at(std::string_view key) const;
  std::vector<std::pair<std::string, JsonCursor>> members() const;

  std::vector<JsonCursor> elements() const;  // of an array

  std::string text() const;
  std::vector<std::string> texts() const;
  bool boolean() const;
  std::int64_t integer() const;
  double number() const;
  Duration duration() const;  // "250ms", "1.5s", "2min", "1h", "30d"

  // The value that stands beside this text in `table`.
  template <class T, std::size_t count>
  T choice(const std::pair<std::string_view, T> (&table)[count]) const {
    const std::string word = text();
    std::string known;
    for (const auto& [name, value] : table) {
      if (name == word) return value;
      known += (known.empty() ? "" : ", ") + std::string(name);
    }
    refuse("\"" + word + "\" is none of: " + known);
  }

 private:
  const Json* value_;
  std::string path_;
};

// JSON in which no object names a key twice. Throws ScenarioError at `place`.
Json parseScenarioText(std::string_view text, const std::string& place);

}  // namespace quillo::sim
