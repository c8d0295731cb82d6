// Faults of applications, clipboard and microphones that take more than a switch.
#pragma once

#include "simulation/faults/fault.h"

namespace quillo::sim {

// Null when none runs.
simulated::SimulatedApplication* someApplication(FaultScene& scene);
Made moveFocusSoon(FaultScene& scene);
Made failActivation(FaultScene& scene);
void obeyActivations(FaultScene& scene);
Made quitSomeApplication(FaultScene& scene);
void launchWhatQuit(FaultScene& scene);

// Another program copies a text, and a picture that it has yet to make.
void copyBadly(FaultScene& scene);
Made copyHugePicture(FaultScene& scene);

// Remembered for this kind.
simulated::Microphone& someMicrophone(FaultScene& scene, FaultKind kind);
Made unplugSomeMicrophone(FaultScene& scene);
void plugItAgain(FaultScene& scene);

Made changeLayout(FaultScene& scene);

}  // namespace quillo::sim
