// Reads the selection of an application that does not expose it: lets the application copy it, and
// puts the user's clipboard back.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/log.h"
#include "base/task.h"
#include "insertion/clipboard_gate.h"
#include "platform/key_poster.h"
#include "platform/keyboard_state.h"
#include "platform/pasteboard.h"

namespace quillo {

// Main thread.
class ClipboardCapture {
 public:
  // Called once, while the gate is still held. Nothing when no plain text was copied.
  using Captured = std::function<void(std::optional<std::string>)>;
  // Asked right before the copy, which takes its text from whatever has the focus then.
  using MayCopy = std::function<bool()>;

  ClipboardCapture(MainThread& mainThread, Pasteboard& pasteboard, KeyPoster& keyPoster,
                   const KeyboardState& keyboardState, MacClipboardGate& gate, Log& log);

  // Gives up without a change where it could cost the user a clipboard or a keystroke. Cannot be
  // abandoned midway, and cancellation shortens nothing. At most 0.9 s once the gate is entered
  // and the clipboard copied.
  Task<> captureViaClipboard(MayCopy mayCopy, Captured completion);

 private:
  Task<std::optional<std::string>> captureInGate(MayCopy mayCopy);
  Task<std::optional<std::string>> copiedText(std::int64_t changeCountBefore);
  Task<> postCopyShortcut();
  bool isUserHoldingCommand() const;

  MainThread& mainThread_;
  Pasteboard& pasteboard_;
  KeyPoster& keyPoster_;
  const KeyboardState& keyboardState_;
  MacClipboardGate& gate_;
  Log& log_;
  bool isOwnCommandDown_ = false;
};

}  // namespace quillo
