#include "insertion/clipboard_capture.h"

#include "base/text.h"
#include "insertion/command_shortcut.h"
#include "insertion/pasteboard_snapshot.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration firstLook = 40ms;
constexpr Duration pollInterval = 30ms;
constexpr int pollCount = 28;  // the first look included

}  // namespace

ClipboardCapture::ClipboardCapture(MainThread& mainThread, Pasteboard& pasteboard,
                                   KeyPoster& keyPoster, const KeyboardState& keyboardState,
                                   MacClipboardGate& gate, Log& log)
    : mainThread_(mainThread),
      pasteboard_(pasteboard),
      keyPoster_(keyPoster),
      keyboardState_(keyboardState),
      gate_(gate),
      log_(log) {}

Task<> ClipboardCapture::captureViaClipboard(MayCopy mayCopy, Captured completion) {
  // Letting go of our Command would cancel the one that the user holds.
  if (isUserHoldingCommand()) {
    log_.log("bubble",
             "user is holding ⌘ (their own copy) — skipping synthetic ⌘C so we don't drop their "
             "modifier");
    completion(std::nullopt);
    co_return;
  }
  co_await gate_.enter();
  const ClipboardGateHold hold(gate_);
  completion(co_await captureInGate(std::move(mayCopy)));
}

Task<std::optional<std::string>> ClipboardCapture::captureInGate(MayCopy mayCopy) {
  const auto snapshot = snapshotPasteboard(pasteboard_, mainThread_);
  if (!snapshot) {
    log_.log("bubble",
             "clipboard too large to snapshot safely — skipping capture to protect the user's "
             "copy");
    co_return std::nullopt;
  }
  // The gate and the snapshot may have taken time.
  if (isUserHoldingCommand()) {
    log_.log("bubble", "⌘ went down during snapshot — skipping synthetic ⌘C");
    co_return std::nullopt;
  }
  if (!mayCopy()) co_return std::nullopt;
  const std::int64_t changeCountBefore = pasteboard_.changeCount();
  co_await postCopyShortcut();
  auto text = co_await copiedText(changeCountBefore);
  restorePasteboard(pasteboard_, *snapshot);
  log_.log("bubble",
           text ? "clipboard selection captured length=" + std::to_string(characterCount(*text))
                : "clipboard selection capture timed out");
  co_return text;
}

// The first change is taken for the answer, whoever made it.
Task<std::optional<std::string>> ClipboardCapture::copiedText(std::int64_t changeCountBefore) {
  for (int look = 0; look < pollCount; ++look) {
    co_await sleepInFull(look == 0 ? firstLook : pollInterval);
    if (pasteboard_.changeCount() == changeCountBefore) continue;
    auto text = pasteboard_.string();
    if (!text) break;
    co_return *std::move(text);
  }
  co_return std::nullopt;
}

Task<> ClipboardCapture::postCopyShortcut() {
  isOwnCommandDown_ = true;
  co_await postCommandShortcut(keyPoster_, copyShortcut);
  isOwnCommandDown_ = false;
}

// The flags hold our own Command as well: a capture that is asked for meanwhile waits its turn.
bool ClipboardCapture::isUserHoldingCommand() const {
  return !isOwnCommandDown_ && (keyboardState_.modifierFlags() & event_flags::command) != 0;
}

}  // namespace quillo
