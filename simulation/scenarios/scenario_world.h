// The parts of a scenario that describe the world: once before the launch, and again in steps.
#pragma once

#include "simulation/scenarios/json_cursor.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// Plays steps while a question waits for its answer.
using PlaySteps = std::function<void(const std::vector<JsonCursor>&)>;

// Makes the world as "world" describes it, and launches the program. An absent cursor gives the
// usual world.
void furnish(World& world, const std::optional<JsonCursor>& cursor, const PlaySteps& play);

// --- The same descriptions as steps use them ---

// A program that starts and comes to the front.
void launchDescribed(World& world, const JsonCursor& cursor);
void describeApplication(simulated::SimulatedApplication& application, const JsonCursor& cursor);
simulated::SimulatedApplication& requireApplication(World& world, const JsonCursor& name);
void setPermissions(World& world, const JsonCursor& cursor);
// How each way from the keyboard to the program fares.
void disturbKeyRoutes(World& world, const JsonCursor& cursor);
void chooseLayout(World& world, const JsonCursor& cursor);
void scriptService(World& world, const JsonCursor& cursor);
void plugMicrophone(World& world, const JsonCursor& cursor);
simulated::Microphone& requireMicrophone(World& world, const JsonCursor& uid);
// A text, or an object with items of several types and the manner of their owner.
void copyDescribed(World& world, const JsonCursor& cursor);
void answerAlert(World& world, const JsonCursor& cursor, const PlaySteps& play);
// "off", or how long after its press a key repeats, and how often.
void repeatKeys(World& world, const JsonCursor& cursor);
// The reason why it fails from now on; null when it works.
void breakVoiceProcessing(World& world, const JsonCursor& cursor);
// "caches", "applicationSupport" or "library", and a path below it.
FilePath requirePath(World& world, const JsonCursor& cursor, const std::string& path);

}  // namespace quillo::sim
