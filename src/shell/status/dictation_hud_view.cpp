#include "shell/status/dictation_hud_view.h"

#include <utility>

namespace quillo {
namespace {

std::string symbolOf(const DictationState& dictation) {
  if (dictation.isRecording) return "mic.fill";
  if (dictation.isProcessing) return "sparkles";
  if (dictation.lastError.get()) return "exclamationmark.triangle.fill";
  return "checkmark";
}

// In an order of its own: while a failed dictation is worked on again, its sparkles are orange.
StateColor colorOf(const DictationState& dictation) {
  if (dictation.isRecording) return StateColor::red;
  if (dictation.lastError.get()) return StateColor::orange;
  return StateColor::accent;
}

}  // namespace

DictationHUDContent hudContent(const DictationState& dictation, Words shortcut) {
  DictationHUDContent content;
  content.symbol = symbolOf(dictation);
  content.color = colorOf(dictation);
  content.statusText = dictation.statusText.get();
  content.detail = dictation.lastError.get().value_or(Words());
  content.offersDismiss = !content.detail.empty();
  content.offersRetry = !content.detail.empty() && dictation.canRetryLast;
  content.offersCancel = dictation.isProcessing;
  if (!content.offersCancel) content.shortcutText = std::move(shortcut);
  content.showsMeter = content.detail.empty() && dictation.isRecording;
  return content;
}

MacDictationHUDView::MacDictationHUDView(const DictationState& dictation, ShortcutText shortcutText,
                                         DictationHUDCommands commands)
    : dictation_(dictation),
      shortcutText_(std::move(shortcutText)),
      commands_(std::move(commands)) {
  const auto follow = [this](const auto& published) {
    subscriptions_.push_back(published.observe([this](const auto&) {
      const DictationHUDContent content = hudContent(dictation_, shortcut_);
      if (content != content_.get()) content_ = content;
    }));
  };
  follow(dictation.isRecording);
  follow(dictation.isProcessing);
  follow(dictation.statusText);
  follow(dictation.lastError);
  follow(dictation.canRetryLast);
  refresh();
}

void MacDictationHUDView::refresh() {
  shortcut_ = shortcutText_();
  content_ = hudContent(dictation_, shortcut_);
}

std::vector<Words> MacDictationHUDView::texts() const {
  std::vector<Words> texts = {content().statusText};
  if (!content().shortcutText.empty()) texts.push_back(content().shortcutText);
  if (!content().detail.empty()) texts.push_back(content().detail);
  return texts;
}

std::vector<Control> MacDictationHUDView::controls() const {
  std::vector<Control> controls;
  const auto offer = [&](const char* id, Words name, const std::function<void()>& press) {
    controls.push_back({.id = id, .name = std::move(name), .press = press});
  };
  if (content().offersDismiss) offer("dismiss", words("Dismiss"), commands_.dismissLastFailure);
  if (content().offersCancel) offer("cancel", words("Cancel"), commands_.cancelProcessing);
  if (content().offersRetry) offer("retry", words("Retry"), commands_.retryLastRecording);
  return controls;
}

}  // namespace quillo
