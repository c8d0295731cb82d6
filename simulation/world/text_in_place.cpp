#include "simulation/world/text_in_place.h"

#include <algorithm>

#include "hosts/simulated/desktop/tree_element.h"
#include "insertion/classification/application_classification.h"

namespace quillo::sim {
namespace {

constexpr std::string_view textAttributes[] = {ax::value, ax::selectedText, ax::selectedTextRange,
                                               ax::numberOfCharacters};

}  // namespace

AccessibilityAnswer ObservedAccessibility::attribute(const AccessibilityElement& element,
                                                     std::string_view name) {
  const auto* seen = simulated::TreeElement::of(element);
  if (seen && seen->isProtected() &&
      std::ranges::find(textAttributes, name) != std::end(textAttributes))
    trace_.tell(events::ProtectedRead{seen->name(), std::string(name)});
  return below_.attribute(element, name);
}

std::string TextObserver::frontmostIdentifier() const {
  const auto frontmost = workspace_.frontmostApplication();
  return frontmost ? frontmost->bundleIdentifier.value_or("?") : "?";
}

void TextObserver::look() {
  const CapturedSelection& now = captured();
  if (now.text != captureSeen_) {
    captureSeen_ = now.text;
    trace_.tell(events::Captured{now.text, now.app.value_or(""), now.viaClipboard});
  }
  if (isBubbleShown() == isBubbleSeen_) return;
  isBubbleSeen_ = isBubbleShown();
  trace_.tell(events::Bubble{isBubbleSeen_});
}

std::string TextObserver::verdictOn(const AccessibilityElement& element) const {
  const FieldClassification& fields = text_.fields();
  const std::string app = frontmostIdentifier();
  const auto told = [](std::string_view what, const Verdict& verdict) {
    return std::string(what) + ": " + std::string(verdict.because);
  };
  if (const Verdict verdict = fields.isSensitiveContext(element)) return told("protected", verdict);
  if (text_.windows().isNonWritingDialog()) return "nothing: a dialog";
  if (isNonWritingApp(app)) return "nothing: an application in which nobody writes";
  const Verdict writing = fields.isWritingContext(element);
  if (!writing) return told("nothing", writing);
  const Verdict nonProse = fields.isNonProseField(element);
  const Verdict badge = fields.isBadgeEligibleField(element, app, [](std::string_view) {});
  const bool hasBadge = badge && !isNoBadgeApp(app);
  if (nonProse) return told(hasBadge ? "badge" : "nothing", nonProse);
  if (hasBadge) return told("bubble and badge", nonProse);
  return badge ? "bubble: an application without a badge" : told("bubble", badge);
}

}  // namespace quillo::sim
