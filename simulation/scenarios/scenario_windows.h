// The windows of applications as scenarios describe them, and what the user does in them.
#pragma once

#include "simulation/scenarios/place.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// The windows, and how the application answers questions about them.
void describeWindows(simulated::Program& program, const Place& application);

// The thing of this name in an application.
simulated::TreeElement& requireElement(simulated::Program& program, const Place& name);

// --- Steps ---

// In the text that has the focus, or in another element, which gets the focus.
void selectText(World& world, const Place& place);
void placeCaret(World& world, const Place& place);
void scrollElement(World& world, const Place& place);
void removeElement(World& world, const Place& place);
void look(World& world, const Place& place);
void clickBadge(World& world, const Place& place);
void dismissBubble(World& world, const Place& place);

}  // namespace quillo::sim
