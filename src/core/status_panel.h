// The small floating panel that shows what a dictation is doing.
#pragma once

#include "base/time.h"

namespace quillo {

// Main thread. What it shows is the published state of the dictation.
class StatusPanel {
 public:
  virtual ~StatusPanel() = default;
  // Also ends a pending hide.
  virtual void show() = 0;
  // Replaces a pending hide. No delay means the next turn.
  virtual void hideAfter(Duration delay) = 0;
  virtual void hideNow() = 0;
};

}  // namespace quillo
