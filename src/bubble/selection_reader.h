// How the text of another application is read, and selected in it. Text of a secret or search field
// is never read, whoever asks.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/log.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/window_classification.h"
#include "platform/accessibility.h"
#include "platform/screens.h"

namespace quillo {

// Main thread. It remembers nothing.
class SelectionReader {
 public:
  SelectionReader(Accessibility& accessibility, const Screens& screens,
                  const FieldClassification& fields, const WindowClassification& windows, Log& log)
      : accessibility_(accessibility),
        screens_(screens),
        fields_(fields),
        windows_(windows),
        log_(log),
        systemWide_(accessibility.systemWideElement()) {}

  // Every call to other applications is limited from here on.
  void limitCalls() { accessibility_.setMessagingTimeout(systemWide_, accessibilityTimeout); }

  std::optional<AccessibilityElement> focusedElement() const;
  bool isFocusSensitive() const;
  // Empty counts as absent; always absent in a sensitive context.
  std::optional<std::string> readSelectedText(const AccessibilityElement& element) const;
  // In bottom-left coordinates.
  std::optional<Rect> selectionBounds(const AccessibilityElement& element) const;

  // Selects the paragraph at the caret in the application, in a chat the whole draft, and gives its
  // text. Nothing when the application refuses, or there is none.
  std::optional<std::string> captureParagraph(const std::optional<AccessibilityElement>& element,
                                              std::string_view bundleIdentifier) const;

  // `line` and the number of characters.
  void logCount(std::string_view category, std::string_view line, std::string_view text) const;

 private:
  bool select(const AccessibilityElement& element, TextRange range) const;
  std::optional<std::string> captureWholeField(const AccessibilityElement& element,
                                               std::int64_t length) const;
  std::optional<std::string> captureParagraphAtCaret(const AccessibilityElement& element) const;

  Accessibility& accessibility_;
  const Screens& screens_;
  const FieldClassification& fields_;
  const WindowClassification& windows_;
  Log& log_;
  AccessibilityElement systemWide_;
};

}  // namespace quillo
