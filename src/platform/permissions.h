// What the user has allowed the program to do.
#pragma once

#include "base/task.h"

namespace quillo {

// Main thread.
class Permissions {
 public:
  virtual ~Permissions() = default;

  virtual bool isMicrophoneAuthorised() const = 0;
  // Asks the user when nothing was decided yet.
  virtual Task<bool> requestMicrophone() = 0;

  // Whether the program may drive other applications.
  virtual bool isAccessibilityTrusted() const = 0;

  // Whether the program may see keys that go to other applications.
  virtual bool hasListenEventAccess() const = 0;
  virtual void requestListenEventAccess() = 0;
};

}  // namespace quillo
