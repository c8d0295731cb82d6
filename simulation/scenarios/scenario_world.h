// The parts of a scenario that describe the world: once before the launch, and again in steps.
#pragma once

#include "simulation/scenarios/place.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// Plays steps while a question waits for its answer.
using PlaySteps = std::function<void(const std::vector<Place>&)>;

// Makes the world as "world" describes it, and launches the program. An absent place gives the
// usual world.
void furnish(World& world, const std::optional<Place>& place, const PlaySteps& play);

// --- The same descriptions as steps use them ---

// A program that starts and comes to the front.
void launchDescribed(World& world, const Place& place);
void describeApplication(simulated::Program& program, const Place& place);
simulated::Program& requireApplication(World& world, const Place& name);
void setPermissions(World& world, const Place& place);
// How each way from the keyboard to the program fares.
void disturbKeyRoutes(World& world, const Place& place);
void chooseLayout(World& world, const Place& place);
void scriptService(World& world, const Place& place);
void plugMicrophone(World& world, const Place& place);
simulated::Microphone& requireMicrophone(World& world, const Place& uid);
// A text, or an object with items of several types and the manner of their owner.
void copyDescribed(World& world, const Place& place);
void answerAlert(World& world, const Place& place, const PlaySteps& play);
// "off", or how long after its press a key repeats, and how often.
void repeatKeys(World& world, const Place& place);
// The reason why it fails from now on; null when it works.
void breakVoiceProcessing(World& world, const Place& place);
// "caches", "applicationSupport" or "library", and a path below it.
FilePath requirePath(World& world, const Place& place, const std::string& path);

}  // namespace quillo::sim
