// Where the core sends the user: places of the main window.
#pragma once

#include "base/words.h"

namespace quillo {

// Main thread.
class Navigator {
 public:
  virtual ~Navigator() = default;
  // Shows the account panel with `message`.
  virtual void openSignIn(const Words& message) = 0;
  virtual void openPlans() = 0;
};

}  // namespace quillo
