// What the user does in the windows of the program.
#pragma once

#include "simulation/scenarios/place.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// Settings by their keys in the store.
void set(World& world, const Place& place);

// --- Writing material and history. Numbers count from 1, in the order of the list. ---
void write(World& world, const Place& place);
void edit(World& world, const Place& place);
void removeMaterial(World& world, const Place& place);

// An operation on the account; time passes until it has ended.
void account(World& world, const Place& place);

}  // namespace quillo::sim
