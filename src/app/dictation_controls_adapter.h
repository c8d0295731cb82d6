// Lets the shortcuts, which stand below the core, drive the dictation.
#pragma once

#include "core/dictation_controller.h"
#include "input/dictation_controls.h"

namespace quillo {

class DictationControlsAdapter final : public DictationControls {
 public:
  explicit DictationControlsAdapter(MacDictationController& dictation) : dictation_(dictation) {}

  bool isRecording() const override { return dictation_.isRecording; }
  Task<> toggleRecording() override { return dictation_.toggleRecording(); }
  void beginHoldRecording() override { dictation_.beginHoldRecording(); }
  void endHoldRecording() override { dictation_.endHoldRecording(); }
  void stopHoldAfterStart() override { dictation_.stopHoldAfterStart = true; }
  void insertLastResult() override { dictation_.insertLastResult(dictation_.lastResult); }

 private:
  MacDictationController& dictation_;
};

}  // namespace quillo
