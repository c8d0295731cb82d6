#include "insertion/text_insertion.h"

#include "base/text.h"
#include "insertion/command_shortcut.h"
#include "insertion/pasteboard_snapshot.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration settleWhenFrontmost = 20ms;
constexpr Duration activationDeadline = 1200ms;
constexpr Duration activationPoll = 50ms;
constexpr Duration settleAfterActivation = 100ms;
constexpr Duration settleBeforePaste = 60ms;
constexpr Duration settleClipboard = 15ms;  // between the write and the keystroke
constexpr Duration pasteAllowance = 300ms;  // in which the target reads the clipboard

// In the order of the reasons.
constexpr std::string_view refusalLines[] = {
    "accessibility not trusted; copied length=",
    "no valid target app; copied length=",
    "secure input active; auto-paste would be discarded — copied length=",
};

std::string withLength(std::string_view line, std::string_view text) {
  return std::string(line) + std::to_string(characterCount(text));
}

std::string applicationDescription(const RunningApplication& application) {
  return application.localizedName.value_or("Unknown") + " (" +
         application.bundleIdentifier.value_or("no.bundle") + ", pid " +
         std::to_string(application.processIdentifier) + ")";
}

}  // namespace

MacTextInsertion::MacTextInsertion(MainThread& mainThread, const Permissions& permissions,
                                   Workspace& workspace, Pasteboard& pasteboard,
                                   KeyPoster& keyPoster, const KeyboardState& keyboardState,
                                   const Application& application, MacClipboardGate& gate, Log& log)
    : mainThread_(mainThread),
      permissions_(permissions),
      workspace_(workspace),
      pasteboard_(pasteboard),
      keyPoster_(keyPoster),
      keyboardState_(keyboardState),
      application_(application),
      gate_(gate),
      log_(log) {}

Task<bool> MacTextInsertion::insertText(std::string text,
                                        std::optional<RunningApplication> target) {
  if (!target) target = workspace_.frontmostApplication();
  const auto refusal = reasonToRefuse(target);
  lastInsertFailure_ = refusal;
  if (refusal) {
    copyString(text);
    log_.log("insert", withLength(refusalLines[static_cast<std::size_t>(*refusal)], text));
    co_return false;
  }
  log_.log("insert",
           withLength("attempt app=" + applicationDescription(*target) + " length=", text));
  co_await activateTarget(*target);
  co_await pasteViaClipboard(std::move(text));
  co_return true;
}

void MacTextInsertion::copyString(std::string_view text) {
  pasteboard_.clearContents();
  pasteboard_.setString(text);
  log_.log("clipboard", withLength("copied string length=", text));
}

std::optional<InsertFailureReason> MacTextInsertion::reasonToRefuse(
    const std::optional<RunningApplication>& target) const {
  if (!permissions_.isAccessibilityTrusted()) return InsertFailureReason::accessibility;
  if (!isUsableTarget(target)) return InsertFailureReason::invalidTarget;
  if (keyboardState_.isSecureEventInputEnabled()) return InsertFailureReason::secureInput;
  return std::nullopt;
}

bool MacTextInsertion::isUsableTarget(const std::optional<RunningApplication>& target) const {
  if (!target) return false;
  // Two missing identifiers count as equal.
  const bool isThisProgram = target->bundleIdentifier == application_.bundle().bundleIdentifier;
  return !isThisProgram && !workspace_.isTerminated(*target);
}

// --- Activation ---

bool MacTextInsertion::isFrontmost(const RunningApplication& target) const {
  return workspace_.frontmostApplication() == target;
}

// A target that cannot be brought to the front stops nothing: the paste goes ahead.
Task<> MacTextInsertion::activateTarget(RunningApplication target) {
  if (isFrontmost(target)) {
    co_await sleepInFull(settleWhenFrontmost);
    co_return;
  }
  const auto accepted = workspace_.activate(target);
  log_.log("insert", "activate target=" + applicationDescription(target) +
                         " result=" + (accepted ? "true" : "false"));
  co_await waitUntilFrontmost(target);
  co_await sleepInFull(settleAfterActivation);
  co_await sleepInFull(settleBeforePaste);
}

Task<> MacTextInsertion::waitUntilFrontmost(RunningApplication target) {
  const MonotonicTime deadline = mainThread_.now() + activationDeadline;
  while (mainThread_.now() < deadline && !isFrontmost(target)) co_await sleepInFull(activationPoll);
}

// --- Paste ---

Task<> MacTextInsertion::pasteViaClipboard(std::string text) {
  co_await gate_.enter();
  const ClipboardGateHold hold(gate_);
  const auto snapshot = snapshotPasteboard(pasteboard_, mainThread_);
  pasteboard_.clearContents();
  pasteboard_.setString(text, snapshot ? ClipboardUse::lent : ClipboardUse::kept);
  co_await sleepInFull(settleClipboard);
  co_await postCommandShortcut(keyPoster_, pasteShortcut);
  co_await sleepInFull(pasteAllowance);
  // What could not be copied is lost: the user asked for the text, and the text stays instead.
  if (snapshot) restorePasteboard(pasteboard_, *snapshot);
  log_.log("insert", withLength("paste shortcut posted length=", text));
}

}  // namespace quillo
