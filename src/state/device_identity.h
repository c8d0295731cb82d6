// Who this installation is to the service.
#pragma once

#include <string>

#include "platform/clock.h"
#include "platform/random.h"
#include "platform/user_defaults.h"

namespace quillo {

// The stored identity, as "qd_t2k9vz1a_x7f3m0qk2ds". Makes and stores one on the first call, and
// gives one of an older version ("qm_...") its new prefix.
std::string deviceIdentity(UserDefaults& defaults, const Clock& clock, Random& random);

}  // namespace quillo
