// What the program sees of the text in other applications, on a simulated desktop.
#pragma once

#include <string>

#include "app/text_in_place.h"
#include "simulation/world/trace.h"

namespace quillo::sim {

// Tells the trace when the text of a field that is protected is asked for.
class ObservedAccessibility final : public Accessibility {
 public:
  ObservedAccessibility(Accessibility& below, Trace& trace) : below_(below), trace_(trace) {}

  AccessibilityElement systemWideElement() override { return below_.systemWideElement(); }
  AccessibilityElement applicationElement(std::int32_t process) override {
    return below_.applicationElement(process);
  }
  void setMessagingTimeout(const AccessibilityElement& element, Duration timeout) override {
    below_.setMessagingTimeout(element, timeout);
  }
  AccessibilityAnswer attribute(const AccessibilityElement& element,
                                std::string_view name) override;
  AccessibilityAnswer parameterizedAttribute(const AccessibilityElement& element,
                                             std::string_view name,
                                             const AccessibilityValue& parameter) override {
    return below_.parameterizedAttribute(element, name, parameter);
  }
  Result<std::vector<std::string>, AccessibilityFailure> attributeNames(
      const AccessibilityElement& element) override {
    return below_.attributeNames(element);
  }
  Result<bool, AccessibilityFailure> isSettable(const AccessibilityElement& element,
                                                std::string_view name) override {
    return below_.isSettable(element, name);
  }
  Result<void, AccessibilityFailure> setAttribute(const AccessibilityElement& element,
                                                  std::string_view name,
                                                  const AccessibilityValue& value) override {
    return below_.setAttribute(element, name, value);
  }
  Result<AccessibilityElement, AccessibilityFailure> elementAtPosition(
      AccessibilityPoint position) override {
    return below_.elementAtPosition(position);
  }
  Result<std::int32_t, AccessibilityFailure> processIdentifier(
      const AccessibilityElement& element) override {
    return below_.processIdentifier(element);
  }

 private:
  Accessibility& below_;
  Trace& trace_;
};

// Watches what the program makes of the text in other applications.
class TextObserver {
 public:
  TextObserver(quillo::TextInPlace& text, const Workspace& workspace, Trace& trace)
      : text_(text), workspace_(workspace), trace_(trace) {}

  const CapturedSelection& captured() const { return text_.bubble().captured(); }
  bool isBubbleShown() const { return text_.bubblePanel().isVisible(); }
  // Bundle identifier of the application in front, or "?".
  std::string frontmostIdentifier() const;

  // What may be offered where this element has the focus of the application in front, and why:
  // "bubble and badge: it is a text area", "protected: it is a search field".
  std::string verdictOn(const AccessibilityElement& element) const;

  // Tells the trace what has been captured, shown and hidden since.
  void look();

 private:
  quillo::TextInPlace& text_;
  const Workspace& workspace_;
  Trace& trace_;
  bool isBubbleSeen_ = false;
  std::string captureSeen_;
};

}  // namespace quillo::sim
