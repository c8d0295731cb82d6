#include "simulation/scenarios/place.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace quillo::sim {
namespace {

constexpr std::pair<std::string_view, double> secondsOfUnit[] = {
    {"ms", 0.001}, {"s", 1}, {"min", 60}, {"h", 3600}, {"d", 86400}};

}  // namespace

void Place::refuse(const std::string& problem) const {
  throw ScenarioError(path_.empty() ? "scenario" : path_, problem);
}

void Place::allowOnly(std::initializer_list<std::string_view> keys) const {
  for (const auto& [key, place] : members()) {
    if (std::ranges::find(keys, key) != keys.end()) continue;
    std::string known;
    for (const std::string_view each : keys)
      known += (known.empty() ? "" : ", ") + std::string(each);
    place.refuse("unknown key; known are: " + known);
  }
}

std::optional<Place> Place::find(std::string_view key) const {
  if (!value_->is_object()) refuse("an object is expected");
  const auto found = value_->find(std::string(key));
  if (found == value_->end()) return std::nullopt;
  return Place(*found, path_.empty() ? std::string(key) : path_ + "." + std::string(key));
}

Place Place::at(std::string_view key) const {
  if (auto found = find(key)) return *found;
  refuse("\"" + std::string(key) + "\" is missing");
}

std::vector<std::pair<std::string, Place>> Place::members() const {
  if (!value_->is_object()) refuse("an object is expected");
  std::vector<std::pair<std::string, Place>> members;
  for (const auto& [key, value] : value_->items()) members.emplace_back(key, at(key));
  return members;
}

std::vector<Place> Place::elements() const {
  if (!value_->is_array()) refuse("an array is expected");
  std::vector<Place> elements;
  for (std::size_t i = 0; i < value_->size(); ++i)
    elements.emplace_back((*value_)[i], path_ + "[" + std::to_string(i) + "]");
  return elements;
}

std::string Place::text() const {
  if (!value_->is_string()) refuse("a text is expected");
  return value_->get<std::string>();
}

std::vector<std::string> Place::texts() const {
  std::vector<std::string> texts;
  for (const Place& element : elements()) texts.push_back(element.text());
  return texts;
}

bool Place::boolean() const {
  if (!value_->is_boolean()) refuse("true or false is expected");
  return value_->get<bool>();
}

std::int64_t Place::integer() const {
  if (!value_->is_number_integer()) refuse("a whole number is expected");
  return value_->get<std::int64_t>();
}

double Place::number() const {
  if (!value_->is_number()) refuse("a number is expected");
  return value_->get<double>();
}

Duration Place::duration() const {
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
