// What the shortcuts ask of the dictation.
#pragma once

#include "base/task.h"

namespace quillo {

// Main thread. Each operation decides by itself whether it is possible now.
class DictationControls {
 public:
  virtual ~DictationControls() = default;

  virtual bool isRecording() const = 0;
  virtual Task<> toggleRecording() = 0;
  virtual void beginHoldRecording() = 0;
  virtual void endHoldRecording() = 0;
  // The keys came up: a recording that is still starting stops as soon as it has started.
  virtual void stopHoldAfterStart() = 0;
  // Inserts the last result again.
  virtual void insertLastResult() = 0;
};

}  // namespace quillo
