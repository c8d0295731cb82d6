#include "bubble/selection_reader.h"

#include "base/text.h"
#include "bubble/selection_rules.h"
#include "insertion/classification/accessibility_reading.h"
#include "insertion/classification/application_classification.h"

namespace quillo {

std::optional<AccessibilityElement> SelectionReader::focusedElement() const {
  return elementAttribute(accessibility_, systemWide_, ax::focusedUIElement);
}

bool SelectionReader::isFocusSensitive() const {
  return fields_.isSensitiveContext(focusedElement()).holds;
}

std::optional<std::string> SelectionReader::readSelectedText(
    const AccessibilityElement& element) const {
  if (fields_.isSensitiveContext(element)) return std::nullopt;
  return textAttribute(accessibility_, element, ax::selectedText);
}

std::optional<Rect> SelectionReader::selectionBounds(const AccessibilityElement& element) const {
  const auto range = rangeAttribute(accessibility_, element, ax::selectedTextRange);
  if (!range) return std::nullopt;
  const AccessibilityAnswer answer =
      accessibility_.parameterizedAttribute(element, ax::boundsForRange, *range);
  const auto* bounds = answer.as<AccessibilityRect>();
  if (!bounds || (bounds->size.width <= 0 && bounds->size.height <= 0)) return std::nullopt;
  return screenRect(screens_, *bounds);
}

void SelectionReader::logCount(std::string_view category, std::string_view line,
                               std::string_view text) const {
  log_.log(category, std::string(line) + std::to_string(characterCount(text)));
}

// --- Without a selection ---

std::optional<std::string> SelectionReader::captureParagraph(
    const std::optional<AccessibilityElement>& element, std::string_view bundleIdentifier) const {
  if (!element || windows_.isGoogleEditor(bundleIdentifier)) return std::nullopt;
  if (!fields_.isWritingContext(element) || fields_.isSensitiveContext(element))
    return std::nullopt;
  const auto length = integerAttribute(accessibility_, *element, ax::numberOfCharacters);
  if (!length || *length < 1) return std::nullopt;
  if (isChatApp(bundleIdentifier) && *length <= longestWholeField) {
    if (auto draft = captureWholeField(*element, *length)) return draft;
  } else if (*length > longestField) {
    return std::nullopt;
  }
  return captureParagraphAtCaret(*element);
}

bool SelectionReader::select(const AccessibilityElement& element, TextRange range) const {
  return accessibility_.setAttribute(element, ax::selectedTextRange, range).has_value();
}

std::optional<std::string> SelectionReader::captureWholeField(const AccessibilityElement& element,
                                                              std::int64_t length) const {
  if (!select(element, {0, length})) return std::nullopt;
  auto text = textAttribute(accessibility_, element, ax::selectedText);
  if (!text || !isAcceptedSelection(*text)) return std::nullopt;
  logCount("badge", "capture whole-field len=", *text);
  return text;
}

std::optional<std::string> SelectionReader::captureParagraphAtCaret(
    const AccessibilityElement& element) const {
  const auto caret = rangeAttribute(accessibility_, element, ax::selectedTextRange);
  if (!caret) return std::nullopt;
  const auto value = textAttribute(accessibility_, element, ax::value);
  if (!value) return std::nullopt;
  const std::u16string units = toUtf16(*value);
  const auto paragraph = paragraphAt(units, caret->location);
  if (!paragraph) return std::nullopt;
  std::string text = fromUtf16(std::u16string_view(units).substr(
      static_cast<std::size_t>(paragraph->location), static_cast<std::size_t>(paragraph->length)));
  if (isBlank(text) || !select(element, *paragraph)) return std::nullopt;
  // The application may have selected something else than it was told.
  text = textAttribute(accessibility_, element, ax::selectedText).value_or(std::move(text));
  if (!isAcceptedSelection(text)) return std::nullopt;
  log_.log("badge", "capture paragraph len=" + std::to_string(paragraph->length));
  return text;
}

}  // namespace quillo
