#include "simulation/scenarios/json_cursor.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace quillo::sim {
namespace {

constexpr std::pair<std::string_view, double> secondsOfUnit[] = {
    {"ms", 0.001}, {"s", 1}, {"min", 60}, {"h", 3600}, {"d", 86400}};

}  // namespace

void JsonCursor::refuse(const std::string& problem) const {
  throw ScenarioError(path_.empty() ? "scenario" : path_, problem);
}

void JsonCursor::allowOnly(std::initializer_list<std::string_view> keys) const {
  for (const auto& [key, cursor] : members()) {
    if (std::ranges::find(keys, key) != keys.end()) continue;
    std::string known;
    for (const std::string_view each : keys)
      known += (known.empty() ? "" : ", ") + std::string(each);
    cursor.refuse("unknown key; known are: " + known);
  }
}

std::optional<JsonCursor> JsonCursor::find(std::string_view key) const {
  if (!value_->is_object()) refuse("an object is expected");
  const auto found = value_->find(std::string(key));
  if (found == value_->end()) return std::nullopt;
  return JsonCursor(*found, path_.empty() ? std::string(key) : path_ + "." + std::string(key));
}

JsonCursor JsonCursor::at(std::string_view key) const {
  if (auto found = find(key)) return *found;
  refuse("\"" + std::string(key) + "\" is missing");
}

std::vector<std::pair<std::string, JsonCursor>> JsonCursor::members() const {
  if (!value_->is_object()) refuse("an object is expected");
  std::vector<std::pair<std::string, JsonCursor>> members;
  for (const auto& [key, value] : value_->items()) members.emplace_back(key, at(key));
  return members;
}

std::vector<JsonCursor> JsonCursor::elements() const {
  if (!value_->is_array()) refuse("an array is expected");
  std::vector<JsonCursor> elements;
  for (std::size_t i = 0; i < value_->size(); ++i)
    elements.emplace_back((*value_)[i], path_ + "[" + std::to_string(i) + "]");
  return elements;
}

std::string JsonCursor::text() const {
  if (!value_->is_string()) refuse("a text is expected");
  return value_->get<std::string>();
}

std::vector<std::string> JsonCursor::texts() const {
  std::vector<std::string> texts;
  for (const JsonCursor& element : elements()) texts.push_back(element.text());
  return texts;
}

bool JsonCursor::boolean() const {
  if (!value_->is_boolean()) refuse("true or false is expected");
  return value_->get<bool>();
}

std::int64_t JsonCursor::integer() const {
  if (!value_->is_number_integer()) refuse("a whole number is expected");
  return value_->get<std::int64_t>();
}

double JsonCursor::number() const {
  if (!value_->is_number()) refuse("a number is expected");
  return value_->get<double>();
}

Duration JsonCursor::duration() const {
  const std::string written = text();
  double count = 0;
  const char* end = written.data() + written.size();
  const auto [rest, error] = std::from_chars(written.data(), end, count);
  const std::string_view unit(rest, static_cast<std::size_t>(end - rest));
  for (const auto& [name, seconds] : secondsOfUnit) {
    if (error == std::errc() && unit == name && count >= 0) return fromSeconds(count * seconds);
  }
  refuse("a duration such as \"250ms\", \"1.5s\", \"2min\", \"1h\" or \"30d\" is expected");
}

Json parseScenarioText(std::string_view text, const std::string& place) {
  std::vector<std::set<std::string>> keysOfOpenObjects;
  const auto refuseRepeatedKeys = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) keysOfOpenObjects.emplace_back();
    if (event == Json::parse_event_t::object_end) keysOfOpenObjects.pop_back();
    if (event == Json::parse_event_t::key &&
        !keysOfOpenObjects.back().insert(parsed.get<std::string>()).second)
      throw ScenarioError(place, "the key " + parsed.dump() + " stands twice in one object");
    return true;
  };
  try {
    return Json::parse(text, refuseRepeatedKeys);
  } catch (const Json::exception& error) {
    throw ScenarioError(place, std::string("this is no JSON: ") + error.what());
  }
}

}  // namespace quillo::sim
