// The controller of the small toolbar beside text in other applications: how it gets hold of the
// text. When it does, and what it shows, is decided by its callers.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/log.h"
#include "base/task.h"
#include "bubble/captured_selection.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/selection_trigger.h"
#include "insertion/classification/window_classification.h"
#include "insertion/clipboard_capture.h"
#include "platform/accessibility.h"
#include "platform/screens.h"
#include "platform/workspace.h"

namespace quillo {

// One look at the selection, and all that it knows by the time it reads the text.
struct SelectionCheck {
  SelectionTrigger trigger = SelectionTrigger::mouse;
  int attempt = 0;
  std::int64_t generation = 0;
  std::optional<AccessibilityElement> element;  // what has the focus
  std::string app;                              // bundle identifier, or "?"
  std::string muteKey;
  std::string label;  // of the site or application, for the mute button
  Rect rect;          // of the selection
  bool isCompact = false;
};

// Main thread. Text of a secret or search field is never read and never copied, whoever asks.
class MacSelectionBubble {
 public:
  // What follows a look, plugged in from above.
  struct Actions {
    std::function<void(const SelectionCheck&)> show;
    std::function<void()> orderOut;
    // Whether there will be another look.
    std::function<bool(const SelectionCheck&)> retryCheck;
  };

  MacSelectionBubble(MainThread& mainThread, Accessibility& accessibility, const Screens& screens,
                     const Workspace& workspace, const FieldClassification& fields,
                     const WindowClassification& windows, ClipboardCapture& clipboard, Log& log,
                     Actions actions);

  // Every call to other applications is limited from here on.
  void start();
  // A capture that is under way comes to nothing.
  void stop();
  bool isRunning() const { return isRunning_; }

  // Looks carry the value with which they were scheduled; only the current one may show anything.
  std::int64_t selectionCheckGeneration() const { return selectionCheckGeneration_; }
  // Voids the looks that are under way; the value for the next one.
  std::int64_t raiseGeneration() { return ++selectionCheckGeneration_; }
  // Nothing is captured any more, and what is under way is void.
  void hide();

  const CapturedSelection& captured() const { return captured_; }

  std::optional<AccessibilityElement> focusedElement() const;
  // Empty counts as absent; always absent in a sensitive context.
  std::optional<std::string> readSelectedText(const AccessibilityElement& element) const;
  // In bottom-left coordinates.
  std::optional<Rect> selectionBounds(const AccessibilityElement& element) const;

  // --- Routes to the text ---

  // Keeps a text that was read, and shows the bubble; hides it when the text is too short.
  void captureDirect(const SelectionCheck& check, std::string text);
  // Shows, hides or retries when the application has copied its selection, at most a second later,
  // unless a newer look has begun or the bubble was hidden meanwhile.
  void captureByClipboard(SelectionCheck check);
  // The user clicked the badge: the selection, or else the paragraph at the caret. `completion` is
  // told whether there is a text, at most a second later; not when the bubble was hidden meanwhile.
  void captureForBadge(std::optional<AccessibilityElement> element,
                       std::function<void(bool)> completion);
  // Selects the paragraph at the caret in the application and keeps it; in a chat the whole draft.
  bool captureParagraph(const std::optional<AccessibilityElement>& element,
                        std::string_view bundleIdentifier);

 private:
  enum class Origin { selection, clipboard };

  void keep(const std::optional<AccessibilityElement>& element, std::string text, Origin origin);
  void showCapture(const SelectionCheck& check, std::string text, Origin origin);
  void finishClipboardRoute(const SelectionCheck& check, const std::optional<std::string>& text);
  bool finishBadgeRoute(const std::optional<AccessibilityElement>& element,
                        const std::optional<std::string>& text);
  bool isFocusSensitive() const;
  ClipboardCapture::MayCopy mayCopy() const;
  bool isCurrent(std::int64_t generation) const {
    return isRunning_ && generation == selectionCheckGeneration_;
  }
  bool select(const AccessibilityElement& element, TextRange range) const;
  bool captureWholeField(const AccessibilityElement& element, std::int64_t length);
  bool captureParagraphAtCaret(const AccessibilityElement& element);
  std::string frontmostIdentifier() const;
  void logCount(std::string_view category, std::string_view line, std::string_view text) const;

  MainThread& mainThread_;
  Accessibility& accessibility_;
  const Screens& screens_;
  const Workspace& workspace_;
  const FieldClassification& fields_;
  const WindowClassification& windows_;
  ClipboardCapture& clipboard_;
  Log& log_;
  Actions actions_;
  AccessibilityElement systemWide_;
  bool isRunning_ = false;
  std::int64_t selectionCheckGeneration_ = 0;
  CapturedSelection captured_;
};

}  // namespace quillo
