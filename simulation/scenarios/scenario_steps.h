// What a scenario's user, and the world around, do step by step.
#pragma once

#include "simulation/scenarios/expectations.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {

// `step` is an object with one key, the verb. Throws ScenarioError for a step that cannot be done,
// and UnmetExpectation.
void playStep(World& world, Memory& memory, const JsonCursor& step);

// What the steps throw is kept in `memory`: they run inside the program, which would swallow it.
PlaySteps playMeanwhile(World& world, Memory& memory);

}  // namespace quillo::sim
