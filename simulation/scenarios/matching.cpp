#include "simulation/scenarios/matching.h"

#include <cmath>

#include "base/text.h"

namespace quillo::sim {
namespace {

bool fits(const JsonCursor& pattern, const Json& found) {
  const JsonCursor source = pattern.at("matches");
  const auto regex = Regex::compile("\\A(?:" + source.text() + ")\\z", Regex::Case::sensitive);
  if (!regex) source.refuse("this is no regular expression");
  return found.is_string() && !regex->matches(found.get<std::string>()).empty();
}

using Compare = bool (*)(const JsonCursor&, const Json&);

bool areAll(const JsonCursor& expected, const Json& found, Compare compare) {
  const std::vector<JsonCursor> elements = expected.elements();
  if (!found.is_array() || elements.size() != found.size()) return false;
  for (std::size_t i = 0; i < elements.size(); ++i)
    if (!compare(elements[i], found[i])) return false;
  return true;
}

Json valueUnder(const Json& object, const std::string& key) {
  return object.contains(key) ? object.at(key) : Json(nullptr);
}

std::int64_t inMilliseconds(Duration duration) {
  return std::llround(toSeconds(duration) * 1000);
}

}  // namespace

bool isPattern(const JsonCursor& expected) {
  return expected.json().is_object() && expected.json().size() == 1 && expected.find("matches");
}

bool isSame(const JsonCursor& expected, const Json& found) {
  if (isPattern(expected)) return fits(expected, found);
  if (expected.json().is_array()) return areAll(expected, found, isSame);
  if (!expected.json().is_object()) return expected.json() == found;
  if (!found.is_object() || found.size() != expected.json().size()) return false;
  for (const auto& [key, value] : expected.members())
    if (!found.contains(key) || !isSame(value, found.at(key))) return false;
  return true;
}

bool isPart(const JsonCursor& expected, const Json& found) {
  if (isPattern(expected)) return fits(expected, found);
  if (expected.json().is_array()) return areAll(expected, found, isPart);
  if (!expected.json().is_object()) return expected.json() == found;
  if (!found.is_object()) return false;
  for (const auto& [key, value] : expected.members())
    if (!isPart(value, valueUnder(found, key))) return false;
  return true;
}

bool isInLine(const JsonCursor& expected, const std::string& line) {
  if (isPattern(expected)) return fits(expected, line);
  return line.find(expected.text()) != std::string::npos;
}

bool isTime(const JsonCursor& expected, Duration found) {
  const std::int64_t passed = inMilliseconds(found);
  if (!expected.json().is_array()) return passed == inMilliseconds(expected.duration());
  const std::vector<JsonCursor> limits = expected.elements();
  if (limits.size() != 2) expected.refuse("the earliest and the latest time are expected");
  return inMilliseconds(limits[0].duration()) <= passed &&
         passed <= inMilliseconds(limits[1].duration());
}

}  // namespace quillo::sim
