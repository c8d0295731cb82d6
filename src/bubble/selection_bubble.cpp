#include "bubble/selection_bubble.h"

#include <algorithm>
#include <chrono>

#include "base/text.h"
#include "bubble/selection_rules.h"
#include "insertion/command_shortcut.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration trustInterval = 2s;
constexpr Duration afterMouseUp = 180ms;
constexpr Duration afterDrag = 320ms;
constexpr Duration afterKey = 180ms;
constexpr Duration whileButtonIsDown = 120ms;
constexpr Duration retryDelay = 180ms;
constexpr Duration retryStep = 120ms;
constexpr int retries = 3;
constexpr Duration showingIsOver = 250ms;

// Arrows, Home, End, Page Up, Page Down.
constexpr std::int64_t selectionKeys[] = {123, 124, 125, 126, 115, 119, 116, 121};
constexpr std::int64_t selectAllKey = 0;  // A
constexpr std::int64_t summonKey = 14;    // E

std::string identifierOf(const std::optional<RunningApplication>& application) {
  return application ? application->bundleIdentifier.value_or("?") : "?";
}

}  // namespace

MacSelectionBubble::MacSelectionBubble(Ports ports, Rooms rooms) : ports_(ports), rooms_(rooms) {
  rooms_.badge.setOwner({.mayTick = [this] { return isRunning_ && !model_.working; },
                         .isBubbleVisible = [this] { return rooms_.panel.isVisible(); }});
}

// --- Running ---

void MacSelectionBubble::start() {
  if (isRunning_) return;
  if (!ports_.permissions.isAccessibilityTrusted()) {
    trustCheck_ = Timer(ports_.mainThread, trustInterval, [this] {
      if (rooms_.settings.selectionBubbleEnabled) start();
    });
    return;
  }
  isRunning_ = true;
  rooms_.reader.limitCalls();
  addMonitors();
  rooms_.hotKeys.registerHotKey(HotKeyId::selectionBubble, summonKey,
                                hot_key_modifiers::control | hot_key_modifiers::option, [this] {
                                  if (isRunning_ && !model_.working)
                                    scheduleCheck(SelectionTrigger::summon, Duration::zero());
                                });
  rooms_.badge.startBadge();
}

void MacSelectionBubble::stop() {
  trustCheck_.invalidate();
  if (!isRunning_) return;
  isRunning_ = false;
  monitors_.clear();
  pendingCheck_.invalidate();
  rooms_.hotKeys.unregister(HotKeyId::selectionBubble);
  rooms_.badge.stopBadge();
  hide();
}

void MacSelectionBubble::addMonitors() {
  using enum MouseEvent::Type;
  observeMouse({leftUp}, [this] { scheduleCheck(SelectionTrigger::mouse, afterMouseUp); });
  observeMouse({leftDragged}, [this] { scheduleCheck(SelectionTrigger::mouse, afterDrag); });
  observeMouse({leftDown, rightDown}, [this] { dismiss(); });
  monitors_.push_back(ports_.eventMonitors
                          .addGlobalMonitor(KeyEvent::Type::keyDown,
                                            [this](const KeyEvent& event) {
                                              if (event.userData != syntheticCopyMarker)
                                                keyPressed(event);
                                            })
                          .value_or(nullptr));
}

void MacSelectionBubble::observeMouse(std::vector<MouseEvent::Type> types,
                                      std::function<void()> act) {
  monitors_.push_back(ports_.mouseMonitors.addGlobalMonitor(
      std::move(types), [act = std::move(act)](const MouseEvent& event) {
        if (event.userData != syntheticCopyMarker) act();
      }));
}

// --- Gestures ---

void MacSelectionBubble::keyPressed(const KeyEvent& event) {
  if (extendsSelection(event)) return scheduleCheck(SelectionTrigger::keyboard, afterKey);
  dismiss();
}

bool MacSelectionBubble::extendsSelection(const KeyEvent& event) const {
  const bool isShifted = (event.flags & event_flags::shift) != 0;
  if (isShifted && std::ranges::find(selectionKeys, event.keyCode) != std::end(selectionKeys))
    return true;
  return event.keyCode == selectAllKey &&
         (event.flags & ports_.keyboardState.editingModifier()) != 0;
}

void MacSelectionBubble::dismiss() {
  if (ports_.mainThread.now() < dismissSuppressedUntil_ || model_.working) return;
  hide();
}

void MacSelectionBubble::scheduleCheck(SelectionTrigger trigger, Duration delay) {
  // The tree is built during the delay.
  rooms_.windows.enableAccessibility(enabledProcesses_);
  planCheck(trigger, 0, ++selectionCheckGeneration_, delay);
}

void MacSelectionBubble::planCheck(SelectionTrigger trigger, int attempt, std::int64_t generation,
                                   Duration delay) {
  pendingCheck_ = Timer(ports_.mainThread, delay, [this, trigger, attempt, generation] {
    runCheck(trigger, attempt, generation);
  });
}

void MacSelectionBubble::runCheck(SelectionTrigger trigger, int attempt, std::int64_t generation) {
  if (!isCurrent(generation) || model_.working) return;
  if (trigger == SelectionTrigger::mouse &&
      (ports_.pointer.pressedButtons() & mouse_buttons::left) != 0)
    return planCheck(trigger, attempt, generation, whileButtonIsDown);

  const auto frontmost = ports_.workspace.frontmostApplication();
  if (frontmost && frontmost->bundleIdentifier &&
      frontmost->bundleIdentifier == ports_.application.bundle().bundleIdentifier)
    return hide();
  rooms_.windows.enableAccessibility(enabledProcesses_);
  SelectionCheck check{
      .trigger = trigger,
      .attempt = attempt,
      .generation = generation,
      .app = identifierOf(frontmost),
      .isCompact = rooms_.settings.compactSelectionBubble && trigger != SelectionTrigger::summon};
  auto outcome = rooms_.gate.decide(std::move(check), rooms_.settings.bubbleMutedContexts.get());
  switch (outcome.decision) {
    case SelectionGate::Decision::hide:
      return hide();
    case SelectionGate::Decision::lookAgain:
      if (!retryCheck(outcome.check)) hide();
      return;
    case SelectionGate::Decision::show:
      return showCapture(outcome.check, std::move(outcome.text), Origin::selection);
    case SelectionGate::Decision::copy:
      return captureByClipboard(std::move(outcome.check));
  }
}

bool MacSelectionBubble::retryCheck(const SelectionCheck& check) {
  if (check.trigger != SelectionTrigger::mouse || check.attempt >= retries) return false;
  planCheck(check.trigger, check.attempt + 1, check.generation,
            retryDelay + check.attempt * retryStep);
  return true;
}

// --- Capturing ---

bool MacSelectionBubble::keep(const std::optional<AccessibilityElement>& element, std::string text,
                              Origin origin) {
  captured_.element = element;
  captured_.text = std::move(text);
  captured_.viaClipboard = origin == Origin::clipboard;
  return true;
}

void MacSelectionBubble::showCapture(const SelectionCheck& check, std::string text, Origin origin) {
  const std::string route = origin == Origin::clipboard ? "clipboard" : "direct";
  if (!isLongEnough(text, check.trigger)) {
    rooms_.reader.logCount("bubble", "skip short selection (" + route + ") length=", text);
    return hide();
  }
  const std::string length = std::to_string(characterCount(text));
  keep(check.element, std::move(text), origin);
  captured_.app = check.app;
  captured_.muteKey = check.muteKey;
  openedFromBadge_ = false;
  ports_.log.log("bubble", "show " + route + " app=" + check.app + " length=" + length +
                               " compact=" + (check.isCompact ? "true" : "false"));
  show(check.label, check.isCompact, check.rect);
}

// The user may have gone to another field while the capture waited for the clipboard.
ClipboardCapture::MayCopy MacSelectionBubble::mayCopy() const {
  return [this] { return !rooms_.reader.isFocusSensitive(); };
}

void MacSelectionBubble::captureByClipboard(SelectionCheck check) {
  if (rooms_.reader.isFocusSensitive()) return finishClipboardRoute(check, std::nullopt);
  auto captured = [this, check = std::move(check)](const std::optional<std::string>& text) {
    finishClipboardRoute(check, text);
  };
  quillo::start(ports_.mainThread,
                rooms_.clipboard.captureViaClipboard(mayCopy(), std::move(captured)));
}

void MacSelectionBubble::finishClipboardRoute(const SelectionCheck& check,
                                              const std::optional<std::string>& text) {
  if (!isCurrent(check.generation)) return;  // a newer look owns the screen
  if (text && isAcceptedSelection(*text)) return showCapture(check, *text, Origin::clipboard);
  if (!retryCheck(check)) hide();
}

void MacSelectionBubble::captureForBadge(std::function<void(bool)> completion) {
  captured_.app = identifierOf(ports_.workspace.frontmostApplication());
  const auto element = captured_.element ? captured_.element : rooms_.reader.focusedElement();
  if (element) {
    auto text = rooms_.reader.readSelectedText(*element);
    if (text && isAcceptedSelection(*text)) {
      rooms_.reader.logCount("badge", "capture direct len=", *text);
      return completion(keep(element, *std::move(text), Origin::selection));
    }
  }
  if (rooms_.reader.isFocusSensitive()) return completion(false);
  auto captured = [this, element, generation = selectionCheckGeneration_,
                   completion = std::move(completion)](const std::optional<std::string>& text) {
    if (isCurrent(generation)) completion(finishBadgeRoute(element, text));
  };
  quillo::start(ports_.mainThread,
                rooms_.clipboard.captureViaClipboard(mayCopy(), std::move(captured)));
}

bool MacSelectionBubble::finishBadgeRoute(const std::optional<AccessibilityElement>& element,
                                          const std::optional<std::string>& text) {
  if (text && isAcceptedSelection(*text)) {
    rooms_.reader.logCount("badge", "capture clipboard len=", *text);
    return keep(element, *text, Origin::clipboard);
  }
  auto paragraph = rooms_.reader.captureParagraph(element, captured_.app.value_or("?"));
  return paragraph && keep(element, *std::move(paragraph), Origin::selection);
}

// --- Showing ---

void MacSelectionBubble::show(const std::string& label, bool isCompact, const Rect& rect) {
  model_.working = false;
  model_.error = std::nullopt;
  model_.activeAction = std::nullopt;
  model_.muteLabel = label;
  model_.isCollapsed = isCompact;
  model_.presentationID = ports_.random.newUuid();
  rooms_.panel.show(rect);
  dismissSuppressedUntil_ = ports_.mainThread.now() + showingIsOver;
}

void MacSelectionBubble::hide() {
  ++selectionCheckGeneration_;
  pendingCheck_.invalidate();
  rooms_.panel.orderOut();
  captured_.element.reset();
  captured_.text.clear();
  captured_.viaClipboard = false;
  if (model_.isCollapsed) model_.isCollapsed = false;
  openedFromBadge_ = false;
}

void MacSelectionBubble::openFromBadge() {
  if (!isRunning_ || model_.working) return;
  const std::string app = identifierOf(ports_.workspace.frontmostApplication());
  const Rect mark = rooms_.badge.frame();
  openedFromBadge_ = true;
  captured_ = {.element = rooms_.reader.focusedElement(), .text = {}, .app = app};
  BubbleContext context = rooms_.contexts.contextKey(captured_.element, std::nullopt, app);
  captured_.muteKey = std::move(context.key);
  rooms_.badge.hideBadge();
  ports_.log.log("badge", "expand app=" + app);
  show(context.label, false, {{mark.midX() - 1, mark.maxY() + 2}, {2, 2}});
}

void MacSelectionBubble::muteCurrentContext() {
  auto& muted = rooms_.settings.bubbleMutedContexts;
  if (!captured_.muteKey.empty() &&
      std::ranges::find(muted.get(), captured_.muteKey) == muted.get().end())
    muted.append(captured_.muteKey);
  hide();
}

}  // namespace quillo
