// The controller of the small toolbar beside text that the user has selected in any application.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/log.h"
#include "base/task.h"
#include "bubble/bubble_model.h"
#include "bubble/bubble_panels.h"
#include "bubble/captured_selection.h"
#include "bubble/context_keys.h"
#include "bubble/field_badge.h"
#include "bubble/selection_gate.h"
#include "bubble/selection_reader.h"
#include "input/global_hot_key.h"
#include "insertion/clipboard_capture.h"
#include "platform/application.h"
#include "platform/event_monitors.h"
#include "platform/keyboard_state.h"
#include "platform/mouse_monitors.h"
#include "platform/permissions.h"
#include "platform/pointer.h"
#include "platform/random.h"
#include "platform/workspace.h"
#include "state/bubble_settings.h"

namespace quillo {

// It watches what the user does with mouse and keys, and decides after each gesture whether there
// is text worth rewriting. Of any number of overlapping gestures only the last may show anything;
// what the program does itself starts nothing; a rewrite keeps its bubble. Main thread.
class MacSelectionBubble {
 public:
  struct Ports {
    MainThread& mainThread;
    Random& random;
    const Workspace& workspace;
    const Application& application;
    const Permissions& permissions;
    const Pointer& pointer;
    const KeyboardState& keyboardState;
    MouseMonitors& mouseMonitors;
    EventMonitors& eventMonitors;
    Log& log;
  };
  struct Rooms {
    BubbleSettings& settings;
    SelectionReader& reader;
    const SelectionGate& gate;
    const WindowClassification& windows;
    const ContextKeys& contexts;
    ClipboardCapture& clipboard;
    GlobalHotKey& hotKeys;
    BubblePanel& panel;
    FieldBadge& badge;
  };

  MacSelectionBubble(Ports ports, Rooms rooms);
  MacSelectionBubble(const MacSelectionBubble&) = delete;
  MacSelectionBubble& operator=(const MacSelectionBubble&) = delete;

  // Idempotent. Comes alive by itself when the user grants access later.
  void start();
  void stop();
  bool isRunning() const { return isRunning_; }

  BubbleModel& model() { return model_; }
  const CapturedSelection& captured() const { return captured_; }
  // The bubble was opened by the badge: its text is captured when an action is picked.
  bool isOpenedFromBadge() const { return openedFromBadge_; }

  // --- What the user does ---

  // The look of an earlier gesture is void.
  void scheduleCheck(SelectionTrigger trigger, Duration delay);
  void openFromBadge();
  // Never here again, until the user says otherwise in the settings.
  void muteCurrentContext();
  // Nothing is captured any more, and what is under way is void.
  void hide();

  // The selection, or else the paragraph at the caret. `completion` is told whether there is a
  // text, at most a second later; not when the bubble was hidden meanwhile.
  void captureForBadge(std::function<void(bool)> completion);

 private:
  enum class Origin { selection, clipboard };

  void addMonitors();
  void observeMouse(std::vector<MouseEvent::Type> types, std::function<void()> act);
  void keyPressed(const KeyEvent& event);
  bool extendsSelection(const KeyEvent& event) const;
  // Another gesture: the bubble goes, unless it has only just come or is at work.
  void dismiss();

  void planCheck(SelectionTrigger trigger, int attempt, std::int64_t generation, Duration delay);
  void runCheck(SelectionTrigger trigger, int attempt, std::int64_t generation);
  bool retryCheck(const SelectionCheck& check);
  bool isCurrent(std::int64_t generation) const {
    return isRunning_ && generation == selectionCheckGeneration_;
  }

  void captureByClipboard(SelectionCheck check);
  void finishClipboardRoute(const SelectionCheck& check, const std::optional<std::string>& text);
  bool finishBadgeRoute(const std::optional<AccessibilityElement>& element,
                        const std::optional<std::string>& text);
  ClipboardCapture::MayCopy mayCopy() const;
  bool keep(const std::optional<AccessibilityElement>& element, std::string text, Origin origin);
  void showCapture(const SelectionCheck& check, std::string text, Origin origin);
  void show(const std::string& label, bool isCompact, const Rect& rect);

  Ports ports_;
  Rooms rooms_;
  BubbleModel model_;
  bool isRunning_ = false;
  Timer trustCheck_;
  std::vector<std::shared_ptr<void>> monitors_;
  Timer pendingCheck_;
  std::int64_t selectionCheckGeneration_ = 0;
  std::set<std::int32_t> enabledProcesses_;
  MonotonicTime dismissSuppressedUntil_ = MonotonicTime::distantPast();
  CapturedSelection captured_;
  bool openedFromBadge_ = false;
};

}  // namespace quillo
