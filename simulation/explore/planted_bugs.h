// Bugs that the invariants must find: something between the program and its ports that goes wrong.
#pragma once

#include <string_view>
#include <utility>

#include "simulation/world/world.h"

namespace quillo::sim {

enum class PlantedBug {
  none,
  clipboardNotRestored,
  pastedTwice,
  pastedAfterCancel,
  pastedIntoWhateverIsInFront,
  recordingDeletedOnFailure,
  segmentsLeft,
  keyLeftDown,
  microphoneLeftOpen,
  tokenLogged,
  wordsLogged,
  requestForgotten,
  releaseIgnored,
  routesNotMerged,
  modifiersIgnored,
  holdBounces,
  panelHides,
  dismissalForgotten,
};

inline constexpr std::pair<std::string_view, PlantedBug> plantedBugNames[] = {
    {"none", PlantedBug::none},
    {"clipboardNotRestored", PlantedBug::clipboardNotRestored},
    {"pastedTwice", PlantedBug::pastedTwice},
    {"pastedAfterCancel", PlantedBug::pastedAfterCancel},
    {"pastedIntoWhateverIsInFront", PlantedBug::pastedIntoWhateverIsInFront},
    {"recordingDeletedOnFailure", PlantedBug::recordingDeletedOnFailure},
    {"segmentsLeft", PlantedBug::segmentsLeft},
    {"keyLeftDown", PlantedBug::keyLeftDown},
    {"microphoneLeftOpen", PlantedBug::microphoneLeftOpen},
    {"tokenLogged", PlantedBug::tokenLogged},
    {"wordsLogged", PlantedBug::wordsLogged},
    {"requestForgotten", PlantedBug::requestForgotten},
    {"releaseIgnored", PlantedBug::releaseIgnored},
    {"routesNotMerged", PlantedBug::routesNotMerged},
    {"modifiersIgnored", PlantedBug::modifiersIgnored},
    {"holdBounces", PlantedBug::holdBounces},
    {"panelHides", PlantedBug::panelHides},
    {"dismissalForgotten", PlantedBug::dismissalForgotten},
};

// Nothing for `none`.
World::MakeLayer layerWith(PlantedBug bug);

}  // namespace quillo::sim
