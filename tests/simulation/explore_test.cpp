// Days of a user under faults, and the bugs that the invariants must find in them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "simulation/explore/explorer.h"

namespace quillo::sim {
namespace {

using testing::Contains;

TEST(Explore, AShortRangeKeepsTheInvariantsAndEveryFaultFires) {
  std::ostringstream report;
  const Exploration all = explore({.firstSeed = 1, .lastSeed = 30, .life = {.hours = 1}}, report);
  EXPECT_EQ(all.code, ExitCode::fine) << report.str();
  for (const Fault& fault : allFaults())
    EXPECT_TRUE(all.fired.contains(fault.kind)) << fault.name << " had no effect in any seed";
  for (const char* act : {"cancel", "retry", "paste last", "review: Insert", "review: Discard",
                          "review: Re-record", "dictate long", "sign in again", "hit the keys"})
    EXPECT_TRUE(all.done.contains(act)) << act;
}

TEST(Explore, ASeedIsOneLife) {
  const std::uint64_t first = live(3, {.hours = 1}).digest;
  EXPECT_EQ(first, live(3, {.hours = 1}).digest);
  EXPECT_NE(first, live(4, {.hours = 1}).digest);
}

struct Planted {
  PlantedBug bug;
  const char* invariant;

  friend void PrintTo(const Planted& planted, std::ostream* out) { *out << planted.invariant; }
};

class PlantedBugs : public testing::TestWithParam<Planted> {};

TEST_P(PlantedBugs, AreFound) {
  std::set<std::string> violations;
  for (std::uint64_t seed = 1; seed <= 8 && !violations.contains(GetParam().invariant); ++seed) {
    for (const Violation& each : live(seed, {.hours = 2, .bug = GetParam().bug}).violations)
      violations.insert(each.invariant);
  }
  EXPECT_THAT(violations, Contains(GetParam().invariant));
}

constexpr Planted plantedBugs[] = {
    {PlantedBug::clipboardNotRestored, "the clipboard is the user's"},
    {PlantedBug::pastedTwice, "text goes where the rules send it, once"},
    {PlantedBug::pastedAfterCancel, "text goes where the rules send it, once"},
    {PlantedBug::pastedIntoWhateverIsInFront, "text goes where the rules send it, once"},
    {PlantedBug::recordingDeletedOnFailure, "no recording is lost"},
    {PlantedBug::segmentsLeft, "nothing is left at rest"},
    {PlantedBug::keyLeftDown, "nothing is left at rest"},
    {PlantedBug::microphoneLeftOpen, "nothing is left at rest"},
    {PlantedBug::tokenLogged, "the log keeps secrets"},
    {PlantedBug::wordsLogged, "the log keeps secrets"},
    {PlantedBug::releaseIgnored, "a hold ends with its keys"},
    {PlantedBug::routesNotMerged, "a press acts once, and only its own"},
    {PlantedBug::modifiersIgnored, "a press acts once, and only its own"},
    {PlantedBug::holdBounces, "a press acts once, and only its own"},
    {PlantedBug::panelHides, "an open microphone is seen"},
};
INSTANTIATE_TEST_SUITE_P(Each, PlantedBugs, testing::ValuesIn(plantedBugs), [](const auto& info) {
  for (const auto& [name, bug] : plantedBugNames)
    if (bug == info.param.bug) return std::string(name);
  return std::string("unnamed");
});

TEST(PlantedBugsOfRest, AForgottenRequestLetsTheProgramNotRest) {
  std::ostringstream report;
  const Exploration all = explore(
      {.firstSeed = 1, .lastSeed = 1, .life = {.bug = PlantedBug::requestForgotten}, .twice = 0},
      report, nullptr);
  EXPECT_EQ(all.code, ExitCode::noRest);
  EXPECT_THAT(
      report.str(),
      testing::HasSubstr(
          "quillo-sim explore --seeds 1..1 --days 1 --hours 9 --bug requestForgotten --trace"));
}

}  // namespace
}  // namespace quillo::sim
