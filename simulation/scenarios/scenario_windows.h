// The windows of applications as scenarios describe them, and what the user does in them.
#pragma once

#include "simulation/scenarios/json_cursor.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// The windows, and how the application answers questions about them.
void describeWindows(simulated::SimulatedApplication& application, const JsonCursor& cursor);

// The thing of this name in an application.
simulated::TreeElement& requireElement(simulated::SimulatedApplication& application,
                                       const JsonCursor& name);

// --- Steps ---

// In the text that has the focus, or in another element, which gets the focus.
void selectText(World& world, const JsonCursor& cursor);
void placeCaret(World& world, const JsonCursor& cursor);
void scrollElement(World& world, const JsonCursor& cursor);
void removeElement(World& world, const JsonCursor& cursor);
void mouse(World& world, const JsonCursor& cursor);
void translate(World& world, const JsonCursor& cursor);
void look(World& world, const JsonCursor& cursor);
void clickBadge(World& world, const JsonCursor& cursor);
void dismissBubble(World& world, const JsonCursor& cursor);

}  // namespace quillo::sim
