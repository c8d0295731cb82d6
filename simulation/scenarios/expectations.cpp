#include "simulation/scenarios/expectations.h"

namespace quillo::sim {
namespace {

Compare comparisonOf(const std::string& key, const JsonCursor& cursor) {
  std::string known;
  for (const auto& subject : {expectationsOfProgram(), expectationsOfDesktop(),
                              expectationsOfText(), expectationsOfPast()}) {
    for (const auto& [name, compare] : subject) {
      if (name == key) return compare;
      known += (known.empty() ? "" : ", ") + std::string(name);
    }
  }
  cursor.refuse("unknown key; known are: " + known);
}

}  // namespace

void expect(World& world, const Memory& memory, const JsonCursor& expected) {
  Findings findings{world, memory.past()};
  for (const auto& [key, cursor] : expected.members()) comparisonOf(key, cursor)(findings, cursor);
  if (!findings.differences.empty()) throw UnmetExpectation(std::move(findings.differences));
}

}  // namespace quillo::sim
