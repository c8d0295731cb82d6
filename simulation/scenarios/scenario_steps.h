// What a scenario's user, and the world around, do step by step.
#pragma once

#include "simulation/scenarios/expectations.h"
#include "simulation/scenarios/place.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// `step` is an object with one key, the verb. Throws ScenarioError for a step that cannot be done,
// and UnmetExpectation.
void playStep(World& world, Memory& memory, const Place& step);

}  // namespace quillo::sim
