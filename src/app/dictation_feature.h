// Dictation, from the microphone to the text in another program, with its panels.
#pragma once

#include <vector>

#include "app/account_feature.h"
#include "app/host_ports.h"
#include "core/dictation_controller.h"
#include "core/navigator.h"
#include "insertion/clipboard_gate.h"
#include "insertion/text_insertion.h"
#include "shell/review/review_panel.h"
#include "shell/status/dictation_hud.h"
#include "state/app_state.h"

namespace quillo {

// Main thread.
class DictationFeature {
 public:
  DictationFeature(const HostPorts& ports, MacAppState& state, AccountFeature& account,
                   Navigator& navigator);

  MacDictationController& controller() { return controller_; }
  // Whoever borrows the clipboard beside the dictation enters it.
  MacClipboardGate& clipboardGate() { return clipboardGate_; }
  MacTextInsertion& insertion() { return insertion_; }

 private:
  DictationHUDCommands hudCommands();
  void traceStatus(SystemLog& systemLog);

  MacClipboardGate clipboardGate_;
  MacTextInsertion insertion_;
  MacDictationHUD hud_;
  MacReviewPanel reviewPanel_;
  MacDictationController controller_;
  std::vector<Subscription> effects_;
};

}  // namespace quillo
