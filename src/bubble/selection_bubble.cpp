#include "bubble/selection_bubble.h"

#include "base/text.h"
#include "bubble/selection_rules.h"
#include "insertion/classification/accessibility_reading.h"
#include "insertion/classification/application_classification.h"

namespace quillo {

MacSelectionBubble::MacSelectionBubble(MainThread& mainThread, Accessibility& accessibility,
                                       const Screens& screens, const Workspace& workspace,
                                       const FieldClassification& fields,
                                       const WindowClassification& windows,
                                       ClipboardCapture& clipboard, Log& log, Actions actions)
    : mainThread_(mainThread),
      accessibility_(accessibility),
      screens_(screens),
      workspace_(workspace),
      fields_(fields),
      windows_(windows),
      clipboard_(clipboard),
      log_(log),
      actions_(std::move(actions)),
      systemWide_(accessibility.systemWideElement()) {}

void MacSelectionBubble::start() {
  isRunning_ = true;
  accessibility_.setMessagingTimeout(systemWide_, accessibilityTimeout);
}

void MacSelectionBubble::stop() {
  isRunning_ = false;
  hide();
}

void MacSelectionBubble::hide() {
  raiseGeneration();
  actions_.orderOut();
  captured_.element.reset();
  captured_.text.clear();
  captured_.viaClipboard = false;
}

// --- Reading ---

std::optional<AccessibilityElement> MacSelectionBubble::focusedElement() const {
  return elementAttribute(accessibility_, systemWide_, ax::focusedUIElement);
}

std::optional<std::string> MacSelectionBubble::readSelectedText(
    const AccessibilityElement& element) const {
  if (fields_.isSensitiveContext(element)) return std::nullopt;
  return textAttribute(accessibility_, element, ax::selectedText);
}

std::optional<Rect> MacSelectionBubble::selectionBounds(const AccessibilityElement& element) const {
  const auto range = rangeAttribute(accessibility_, element, ax::selectedTextRange);
  if (!range) return std::nullopt;
  const AccessibilityAnswer answer =
      accessibility_.parameterizedAttribute(element, ax::boundsForRange, *range);
  const auto* bounds = answer.as<AccessibilityRect>();
  if (!bounds || (bounds->size.width <= 0 && bounds->size.height <= 0)) return std::nullopt;
  return screenRect(screens_, *bounds);
}

std::string MacSelectionBubble::frontmostIdentifier() const {
  const auto frontmost = workspace_.frontmostApplication();
  return frontmost ? frontmost->bundleIdentifier.value_or("?") : "?";
}

bool MacSelectionBubble::isFocusSensitive() const {
  return fields_.isSensitiveContext(focusedElement()).holds;
}

// The user may have gone to another field while the capture waited for the clipboard.
ClipboardCapture::MayCopy MacSelectionBubble::mayCopy() const {
  return [this] { return !isFocusSensitive(); };
}

void MacSelectionBubble::logCount(std::string_view category, std::string_view line,
                                  std::string_view text) const {
  log_.log(category, std::string(line) + std::to_string(characterCount(text)));
}

// --- Keeping ---

void MacSelectionBubble::keep(const std::optional<AccessibilityElement>& element, std::string text,
                              Origin origin) {
  captured_.element = element;
  captured_.text = std::move(text);
  captured_.viaClipboard = origin == Origin::clipboard;
}

void MacSelectionBubble::showCapture(const SelectionCheck& check, std::string text, Origin origin) {
  const std::string_view route = origin == Origin::clipboard ? "clipboard" : "direct";
  if (!isLongEnough(text, check.trigger)) {
    logCount("bubble", "skip short selection (" + std::string(route) + ") length=", text);
    return hide();
  }
  const std::string length = std::to_string(characterCount(text));
  keep(check.element, std::move(text), origin);
  captured_.app = check.app;
  captured_.muteKey = check.muteKey;
  log_.log("bubble", "show " + std::string(route) + " app=" + check.app + " length=" + length +
                         " compact=" + (check.isCompact ? "true" : "false"));
  actions_.show(check);
}

// --- Routes of a look at the selection ---

void MacSelectionBubble::captureDirect(const SelectionCheck& check, std::string text) {
  showCapture(check, std::move(text), Origin::selection);
}

void MacSelectionBubble::captureByClipboard(SelectionCheck check) {
  if (isFocusSensitive()) return finishClipboardRoute(check, std::nullopt);
  auto captured = [this, check = std::move(check)](const std::optional<std::string>& text) {
    finishClipboardRoute(check, text);
  };
  quillo::start(mainThread_, clipboard_.captureViaClipboard(mayCopy(), std::move(captured)));
}

void MacSelectionBubble::finishClipboardRoute(const SelectionCheck& check,
                                              const std::optional<std::string>& text) {
  if (!isCurrent(check.generation)) return;  // a newer look owns the screen
  if (text && isAcceptedSelection(*text)) return showCapture(check, *text, Origin::clipboard);
  if (!actions_.retryCheck(check)) hide();
}

// --- Routes of the badge ---

void MacSelectionBubble::captureForBadge(std::optional<AccessibilityElement> element,
                                         std::function<void(bool)> completion) {
  captured_.app = frontmostIdentifier();
  if (!element) element = focusedElement();
  if (element) {
    auto text = readSelectedText(*element);
    if (text && isAcceptedSelection(*text)) {
      logCount("badge", "capture direct len=", *text);
      keep(element, *std::move(text), Origin::selection);
      return completion(true);
    }
  }
  if (isFocusSensitive()) return completion(false);
  auto captured = [this, element, generation = selectionCheckGeneration_,
                   completion = std::move(completion)](const std::optional<std::string>& text) {
    if (isCurrent(generation)) completion(finishBadgeRoute(element, text));
  };
  quillo::start(mainThread_, clipboard_.captureViaClipboard(mayCopy(), std::move(captured)));
}

bool MacSelectionBubble::finishBadgeRoute(const std::optional<AccessibilityElement>& element,
                                          const std::optional<std::string>& text) {
  if (!text || !isAcceptedSelection(*text))
    return captureParagraph(element, captured_.app.value_or("?"));
  logCount("badge", "capture clipboard len=", *text);
  keep(element, *text, Origin::clipboard);
  return true;
}

bool MacSelectionBubble::captureParagraph(const std::optional<AccessibilityElement>& element,
                                          std::string_view bundleIdentifier) {
  if (!element || windows_.isGoogleEditor(bundleIdentifier)) return false;
  if (!fields_.isWritingContext(element) || fields_.isSensitiveContext(element)) return false;
  const auto length = integerAttribute(accessibility_, *element, ax::numberOfCharacters);
  if (!length || *length < 1) return false;
  if (isChatApp(bundleIdentifier) && *length <= longestWholeField) {
    if (captureWholeField(*element, *length)) return true;
  } else if (*length > longestField) {
    return false;
  }
  return captureParagraphAtCaret(*element);
}

bool MacSelectionBubble::select(const AccessibilityElement& element, TextRange range) const {
  return accessibility_.setAttribute(element, ax::selectedTextRange, range).has_value();
}

bool MacSelectionBubble::captureWholeField(const AccessibilityElement& element,
                                           std::int64_t length) {
  if (!select(element, {0, length})) return false;
  auto text = textAttribute(accessibility_, element, ax::selectedText);
  if (!text || !isAcceptedSelection(*text)) return false;
  logCount("badge", "capture whole-field len=", *text);
  keep(element, *std::move(text), Origin::selection);
  return true;
}

bool MacSelectionBubble::captureParagraphAtCaret(const AccessibilityElement& element) {
  const auto caret = rangeAttribute(accessibility_, element, ax::selectedTextRange);
  if (!caret) return false;
  const auto value = textAttribute(accessibility_, element, ax::value);
  if (!value) return false;
  const std::u16string units = toUtf16(*value);
  const auto paragraph = paragraphAt(units, caret->location);
  if (!paragraph) return false;
  std::string text = fromUtf16(std::u16string_view(units).substr(
      static_cast<std::size_t>(paragraph->location), static_cast<std::size_t>(paragraph->length)));
  if (isBlank(text) || !select(element, *paragraph)) return false;
  // The application may have selected something else than it was told.
  text = textAttribute(accessibility_, element, ax::selectedText).value_or(std::move(text));
  if (!isAcceptedSelection(text)) return false;
  keep(element, std::move(text), Origin::selection);
  log_.log("badge", "capture paragraph len=" + std::to_string(paragraph->length));
  return true;
}

}  // namespace quillo
