// What the service answers while it is out of order.
#pragma once

#include "simulation/faults/fault.h"

namespace quillo::sim {

simulated::Answer stall(FaultScene& scene, const AskedOfService& asked);
// The usual answer, broken off or after a while.
simulated::Answer truncate(FaultScene& scene, const AskedOfService& asked);
simulated::Answer answerLate(FaultScene& scene, const AskedOfService& asked);
simulated::Answer fail(FaultScene& scene, const AskedOfService& asked);
simulated::Answer refuseToken(FaultScene& scene, const AskedOfService& asked);
simulated::Answer reachLimit(FaultScene& scene, const AskedOfService& asked);
// Of a hotel that wants its guests to sign in.
simulated::Answer sendPage(FaultScene& scene, const AskedOfService& asked);
simulated::Answer hearNothing(FaultScene& scene, const AskedOfService& asked);
simulated::Answer refuseText(FaultScene& scene, const AskedOfService& asked);

}  // namespace quillo::sim
