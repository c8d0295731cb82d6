// Lives random days of a user under random faults, and checks what must always hold.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "simulation/explore/planted_bugs.h"
#include "simulation/faults/faults.h"
#include "simulation/invariants/invariants.h"
#include "simulation/scenarios/scenario.h"

namespace quillo::sim {

// How a seed is lived.
struct LifeOptions {
  int days = 1;
  int hours = 9;  // of work a day
  PlantedBug bug = PlantedBug::none;
};

struct ExploreOptions {
  std::uint64_t firstSeed = 1;
  std::uint64_t lastSeed = 1;  // included
  LifeOptions life{};
  // One seed in so many is lived twice, and must end the same.
  std::uint64_t twice = 8;
};

// What came of one seed.
struct Life {
  ExitCode code = ExitCode::fine;
  std::vector<FaultKind> chosen;
  int budget = 0;
  std::vector<Violation> violations;
  std::string crash;
  std::uint64_t digest = 0;
  std::uint64_t events = 0;
  Duration lived{};
  Duration spoken{};
  int dictations = 0;  // that went live
  std::map<FaultKind, int> fired;
  std::map<std::string, int> done;
};

// `trace` may be null.
Life live(std::uint64_t seed, const LifeOptions& options, std::ostream* trace = nullptr);

// What came of all of them together.
struct Exploration {
  ExitCode code = ExitCode::fine;
  int seeds = 0;
  int failed = 0;  // of them
  Duration lived{};
  Duration spoken{};
  int dictations = 0;
  std::map<FaultKind, int> fired;
  std::map<std::string, int> done;
  std::set<std::string> violated;
};

// A line a seed that fails goes to `report`, with the command that repeats it. `trace` may be null.
Exploration explore(const ExploreOptions& options, std::ostream& report,
                    std::ostream* trace = nullptr);

}  // namespace quillo::sim
