// What an expectation looks at, and what it found otherwise.
#pragma once

#include <exception>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulation/scenarios/matching.h"
#include "simulation/scenarios/memory.h"
#include "simulation/world/world.h"

namespace quillo::sim {

struct Difference {
  std::string place;
  std::string expected;
  std::string found;
};

class UnmetExpectation final : public std::exception {
 public:
  explicit UnmetExpectation(std::vector<Difference> differences);
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::string what_;
};

struct Findings {
  World& world;
  const Past& past;
  std::vector<Difference> differences{};

  void differ(const JsonCursor& cursor, std::string expected, std::string found) {
    differences.push_back({cursor.path(), std::move(expected), std::move(found)});
  }
  void differ(const JsonCursor& cursor, const Json& found) {
    differ(cursor, encodeJson(cursor.json()), encodeJson(found));
  }
  void same(const JsonCursor& cursor, const Json& found) {
    if (!isSame(cursor, found)) differ(cursor, found);
  }
  void part(const JsonCursor& cursor, const Json& found) {
    if (!isPart(cursor, found)) differ(cursor, found);
  }
  // Arrays of the same length; tells each element that differs.
  void parts(const JsonCursor& cursor, const Json& found);
  // Each is in some line.
  void linesOf(const JsonCursor& cursor, const std::vector<std::string>& lines);
  // The members of an object, each compared to the one of `found`; others are refused.
  void members(const JsonCursor& cursor, const Json& found);
};

using Compare = void (*)(Findings&, const JsonCursor&);
using Expectation = std::pair<std::string_view, Compare>;

// By subject.
std::span<const Expectation> expectationsOfProgram();
std::span<const Expectation> expectationsOfDesktop();
std::span<const Expectation> expectationsOfText();
std::span<const Expectation> expectationsOfPast();

}  // namespace quillo::sim
