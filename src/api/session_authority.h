// The session of the user, as a request sees it.
#pragma once

#include "base/task.h"

namespace quillo {

// Main thread.
class SessionAuthority {
 public:
  virtual ~SessionAuthority() = default;

  virtual bool isLoggedIn() const = 0;
  // Whether the session token has expired or is about to.
  virtual bool needsRefresh() const = 0;
  // Many callers share one running refresh. False when the session could not be refreshed. Throws
  // CancellationError as soon as the caller is cancelled; the refresh goes on for the others.
  virtual Task<bool> refreshSession() = 0;
};

}  // namespace quillo
