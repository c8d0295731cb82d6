#include "simulation/scenarios/findings.h"

#include <algorithm>

namespace quillo::sim {
namespace {

std::string describe(const std::vector<Difference>& differences) {
  std::string text;
  for (const Difference& each : differences) {
    if (!text.empty()) text += '\n';
    text += each.place + ": expected " + each.expected + ", found " + each.found;
  }
  return text;
}

std::string keysOf(const Json& object) {
  std::string keys;
  for (const auto& [key, value] : object.items()) keys += (keys.empty() ? "" : ", ") + key;
  return keys;
}

}  // namespace

UnmetExpectation::UnmetExpectation(std::vector<Difference> differences)
    : what_(describe(differences)) {}

void Findings::parts(const JsonCursor& cursor, const Json& found) {
  const std::vector<JsonCursor> elements = cursor.elements();
  if (elements.size() != found.size()) return differ(cursor, found);
  for (std::size_t i = 0; i < elements.size(); ++i) part(elements[i], found[i]);
}

void Findings::linesOf(const JsonCursor& cursor, const std::vector<std::string>& lines) {
  for (const JsonCursor& wanted : cursor.elements()) {
    if (std::ranges::any_of(lines, [&](const auto& line) { return isInLine(wanted, line); }))
      continue;
    std::string all;
    for (const std::string& each : lines) all += "\n    " + each;
    differ(wanted, "the line " + encodeJson(wanted.json()), "only:" + all);
  }
}

void Findings::members(const JsonCursor& cursor, const Json& found) {
  for (const auto& [key, value] : cursor.members()) {
    if (!found.contains(key)) value.refuse("unknown key; known are: " + keysOf(found));
    same(value, found.at(key));
  }
}

}  // namespace quillo::sim
