// What a scenario expects to see.
#pragma once

#include "simulation/scenarios/findings.h"

namespace quillo::sim {

// Throws UnmetExpectation with everything that differs, and ScenarioError for an unknown key.
void expect(World& world, const Memory& memory, const JsonCursor& expected);

}  // namespace quillo::sim
