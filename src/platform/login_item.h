// The start of the program with the session.
#pragma once

#include "base/result.h"

namespace quillo {

// Main thread. Each call blocks for as long as the disk takes.
class LoginItem {
 public:
  virtual ~LoginItem() = default;
  virtual bool isEnabled() const = 0;
  // Done as well when it is registered already.
  virtual Result<void, Problem> registerItem() = 0;
  // Done as well when it is not registered.
  virtual Result<void, Problem> unregisterItem() = 0;
};

}  // namespace quillo
