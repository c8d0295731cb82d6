// Who may borrow the user's clipboard now.
#pragma once

#include "base/gate.h"

namespace quillo {

// A borrower waits in its pauses with the clipboard changed; a second one that came in between
// would take the first one's text for the user's. Exists once. Main thread.
class MacClipboardGate final : public Gate {};

// The gate, entered, until this goes: co_await gate.enter(); const ClipboardGateHold hold(gate);
class ClipboardGateHold {
 public:
  explicit ClipboardGateHold(MacClipboardGate& gate) : gate_(gate) {}
  ClipboardGateHold(const ClipboardGateHold&) = delete;
  ClipboardGateHold& operator=(const ClipboardGateHold&) = delete;
  ~ClipboardGateHold() { gate_.leave(); }

 private:
  MacClipboardGate& gate_;
};

}  // namespace quillo
