// What the user does in the windows of the program.
#pragma once

#include "simulation/scenarios/json_cursor.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// Settings by their keys in the store.
void set(World& world, const JsonCursor& cursor);

// --- Writing material and history. Numbers count from 1, in the order of the list. ---
void write(World& world, const JsonCursor& cursor);
void edit(World& world, const JsonCursor& cursor);
void removeMaterial(World& world, const JsonCursor& cursor);

// An operation on the account; time passes until it has ended.
void account(World& world, const JsonCursor& cursor);

}  // namespace quillo::sim
