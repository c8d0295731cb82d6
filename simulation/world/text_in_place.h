// What the program sees of the text in other applications, on a simulated desktop.
#pragma once

#include <functional>
#include <set>
#include <string>

#include "app/host_ports.h"
#include "bubble/selection_bubble.h"
#include "hosts/simulated/desktop/simulated_workspace.h"
#include "insertion/clipboard_gate.h"
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

// The rooms that look at text, beside the program and with its clipboard gate. A look is decided in
// short, by the predicates and the routes: what leads to one is not built yet.
class TextInPlace {
 public:
  TextInPlace(const HostPorts& ports, Accessibility& accessibility, MacClipboardGate& gate,
              Trace& trace);

  MacSelectionBubble& bubble() { return bubble_; }
  bool isShown() const { return isShown_; }
  // Bundle identifier of the application in front, or "?".
  std::string frontmostIdentifier() const;

  // --- The user ---

  void look(SelectionTrigger trigger);
  // Clicks the badge, and then an action: the text is captured.
  void clickBadge();
  void dismiss();

  // What may be offered where this element has the focus of the application in front, and why:
  // "bubble and badge: it is a text area", "protected: it is a search field".
  std::string verdictOn(const AccessibilityElement& element) const;

  // Tells the trace what has been captured since.
  void tellCapture();

 private:
  void setShown(bool isShown);

  const Workspace& workspace_;
  Trace& trace_;
  FieldClassification fields_;
  WindowClassification windows_;
  ClipboardCapture clipboard_;
  MacSelectionBubble bubble_;
  std::set<std::int32_t> enabledProcesses_;
  bool isShown_ = false;
  std::string captureSeen_;
};

}  // namespace quillo::sim
