#include "simulation/scenarios/scenario.h"

#include <algorithm>
#include <ostream>

#include "simulation/invariants/invariants.h"
#include "simulation/scenarios/scenario_steps.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

// After this the last panel has gone.
constexpr Duration aftermath = 20s;

void play(World& world, Memory& memory, const JsonCursor& scenario) {
  const auto cursor = scenario.find("world");
  furnish(world, cursor, playMeanwhile(world, memory));
  memory.throwKept();
  for (const JsonCursor& step : scenario.at("steps").elements()) playStep(world, memory, step);
}

void requireQuestions(World& world, Memory& memory) {
  memory.throwKept();
  const std::size_t unasked = world.desktop().alerts().answersLeft();
  if (unasked > 0)
    throw UnmetExpectation({{"alerts", "a question for each answer",
                             std::to_string(unasked) + " answers to questions that never came"}});
}

std::uint64_t seedOf(const JsonCursor& scenario) {
  if (const auto world = scenario.find("world"))
    if (const auto seed = world->find("seed")) return static_cast<std::uint64_t>(seed->integer());
  return 1;
}

// A scenario may end in the middle of something: then rest means nothing yet.
ExitCode checkInvariants(World& world, Invariants& invariants, const std::string& name,
                         std::ostream& problems) {
  world.runFor(aftermath);
  if (world.isAtRest()) invariants.rest(restFacts(world));
  invariants.end();
  for (const Violation& each : invariants.violations())
    problems << name << ": at " << toSeconds(each.time.sinceStart)
             << " s an invariant is violated (" << each.invariant << "): " << each.how << '\n';
  return invariants.violations().empty() ? ExitCode::fine : ExitCode::violation;
}

}  // namespace

ExitCode worse(ExitCode a, ExitCode b) {
  return std::max(a, b);
}

ExitCode playScenario(std::string_view json, const std::string& name, Streams streams) {
  try {
    const Json parsed = parseScenarioText(json, "scenario");
    const JsonCursor scenario(parsed, "");
    scenario.allowOnly({"about", "world", "steps"});
    scenario.at("about").text();
    Memory memory;
    Invariants invariants({}, Words::unknown);
    World world(seedOf(scenario));
    memory.follow(world.trace());
    invariants.follow(world.trace());
    if (streams.trace) world.trace().printTo(*streams.trace);
    play(world, memory, scenario);
    const ExitCode code = checkInvariants(world, invariants, name, streams.problems);
    requireQuestions(world, memory);
    return code;
  } catch (const ScenarioError& error) {
    streams.problems << name << ": " << error.what() << '\n';
    return ExitCode::refused;
  } catch (const UnmetExpectation& error) {
    streams.problems << name << ": " << error.what() << '\n';
    return ExitCode::differs;
  } catch (const std::exception& error) {
    streams.problems << name << ": the program crashed: " << error.what() << '\n';
    return ExitCode::crash;
  }
}

}  // namespace quillo::sim
