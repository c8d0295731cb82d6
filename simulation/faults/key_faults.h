// Faults of the ways from the keyboard to the program: of one of them, or of all.
#pragma once

#include "simulation/faults/fault.h"

namespace quillo::sim {

Made refuseRoutes(FaultScene& scene);
void admitRoutes(FaultScene& scene);
// These have fired when a key has met them.
Made slowRoutes(FaultScene& scene);
void speedRoutes(FaultScene& scene);
Made loseInRoutes(FaultScene& scene);
void mendRoutes(FaultScene& scene);
Made doubleInRoutes(FaultScene& scene);
void singleRoutes(FaultScene& scene);

// Another program registers one of the chords.
Made takeChord(FaultScene& scene);

}  // namespace quillo::sim
