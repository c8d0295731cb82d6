// What the status panel shows of a dictation.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/published.h"
#include "core/dictation_state.h"
#include "platform/panels.h"

namespace quillo {

enum class StateColor { red, orange, accent };

struct DictationHUDContent {
  std::string symbol;
  StateColor color = StateColor::accent;
  Words statusText;
  Words detail;        // a sentence below the status; empty for none
  Words shortcutText;  // empty while it gives way to Cancel
  bool offersDismiss = false;
  bool offersCancel = false;
  bool offersRetry = false;
  bool showsMeter = false;

  friend bool operator==(const DictationHUDContent&, const DictationHUDContent&) = default;
};

// `shortcut` is the chord that dictates, as the user reads it.
DictationHUDContent hudContent(const DictationState& dictation, Words shortcut);

// What the buttons do.
struct DictationHUDCommands {
  std::function<void()> cancelProcessing;
  std::function<void()> retryLastRecording;
  std::function<void()> dismissLastFailure;
};

// Follows the dictation. Main thread.
class MacDictationHUDView final : public Content {
 public:
  using ShortcutText = std::function<Words()>;

  MacDictationHUDView(const DictationState& dictation, ShortcutText shortcutText,
                      DictationHUDCommands commands);
  MacDictationHUDView(const MacDictationHUDView&) = delete;
  MacDictationHUDView& operator=(const MacDictationHUDView&) = delete;

  const DictationHUDContent& content() const { return content_; }
  bool isRecording() const { return dictation_.isRecording; }
  // Calls `changed` whenever the content differs from before.
  [[nodiscard]] Subscription observe(Published<DictationHUDContent>::Observer changed) const {
    return content_.observe(std::move(changed));
  }
  // The level is not part of the content, so that the meter alone follows it.
  [[nodiscard]] Subscription observeLevel(Published<float>::Observer changed) const {
    return dictation_.audioLevel.observe(std::move(changed));
  }
  // The chord is looked up here, and not watched.
  void refresh();

  static constexpr std::string_view name = "status";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override;
  std::vector<Control> controls() const override;

 private:
  const DictationState& dictation_;
  ShortcutText shortcutText_;
  DictationHUDCommands commands_;
  Words shortcut_;
  Published<DictationHUDContent> content_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillo
