// The one way in which finished text enters another application.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/log.h"
#include "base/task.h"
#include "insertion/clipboard_gate.h"
#include "insertion/insert_failure.h"
#include "platform/application.h"
#include "platform/key_poster.h"
#include "platform/keyboard_state.h"
#include "platform/pasteboard.h"
#include "platform/permissions.h"
#include "platform/workspace.h"

namespace quillo {

// Pastes through the clipboard; types nothing and tries nothing twice. Main thread.
class MacTextInsertion {
 public:
  MacTextInsertion(MainThread& mainThread, const Permissions& permissions, Workspace& workspace,
                   Pasteboard& pasteboard, KeyPoster& keyPoster, const KeyboardState& keyboardState,
                   const Application& application, MacClipboardGate& gate, Log& log);

  // Brings `target` (or else the frontmost application) to the front and pastes. True when the
  // paste keystroke was posted; whether the application took it cannot be known. False leaves the
  // text on the clipboard and sets lastInsertFailure(). Cancellation changes nothing once it
  // has begun: a clipboard that came back early would be what a slow application pastes.
  Task<bool> insertText(std::string text, std::optional<RunningApplication> target);

  // Leaves the text on the clipboard, for the user to paste.
  void copyString(std::string_view text);

  // Of the latest insertText(); to be read in the turn in which that returned.
  std::optional<InsertFailureReason> lastInsertFailure() const { return lastInsertFailure_; }

 private:
  std::optional<InsertFailureReason> reasonToRefuse(
      const std::optional<RunningApplication>& target) const;
  bool isUsableTarget(const std::optional<RunningApplication>& target) const;
  bool isFrontmost(const RunningApplication& target) const;
  Task<> activateTarget(RunningApplication target);
  Task<> waitUntilFrontmost(RunningApplication target);
  Task<> pasteViaClipboard(std::string text);

  MainThread& mainThread_;
  const Permissions& permissions_;
  Workspace& workspace_;
  Pasteboard& pasteboard_;
  KeyPoster& keyPoster_;
  const KeyboardState& keyboardState_;
  const Application& application_;
  MacClipboardGate& gate_;
  Log& log_;
  std::optional<InsertFailureReason> lastInsertFailure_;
};

}  // namespace quillo
