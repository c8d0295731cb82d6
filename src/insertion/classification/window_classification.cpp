#include "insertion/classification/window_classification.h"

#include <algorithm>

#include "base/text.h"
#include "insertion/classification/accessibility_reading.h"
#include "insertion/classification/application_classification.h"
#include "insertion/classification/field_phrases.h"

namespace quillo {

std::optional<AccessibilityElement> WindowClassification::focusedWindow() const {
  const auto frontmost = workspace_.frontmostApplication();
  if (!frontmost) return std::nullopt;
  const AccessibilityElement application =
      accessibility_.applicationElement(frontmost->processIdentifier);
  accessibility_.setMessagingTimeout(application, accessibilityTimeout);
  auto window = elementAttribute(accessibility_, application, ax::focusedWindow);
  return window ? window : elementAttribute(accessibility_, application, ax::mainWindow);
}

std::optional<std::string> WindowClassification::focusedWindowTitle() const {
  const auto window = focusedWindow();
  return window ? textAttribute(accessibility_, *window, ax::title) : std::nullopt;
}

std::string WindowClassification::lowercasedTitle() const {
  return lowercased(focusedWindowTitle().value_or(""));
}

bool WindowClassification::isNonWritingDialog() const {
  const auto window = focusedWindow();
  if (!window) return false;
  const auto subrole = textAttribute(accessibility_, *window, ax::subrole);
  if (subrole != "AXDialog" && subrole != "AXSystemDialog" && subrole != "AXSheet") return false;
  const std::string title =
      lowercased(textAttribute(accessibility_, *window, ax::title).value_or(""));
  return std::ranges::any_of(nonWritingDialogTitles, [&title](std::string_view part) {
    return title.find(part) != std::string::npos;
  });
}

bool WindowClassification::titleHasAny(std::initializer_list<std::string_view> names) const {
  const std::string title = lowercasedTitle();
  return std::ranges::any_of(
      names, [&title](std::string_view name) { return title.find(name) != std::string::npos; });
}

bool WindowClassification::isGoogleCanvas(std::string_view bundleIdentifier) const {
  return isBrowser(bundleIdentifier) && titleHasAny({"google sheets", "google slides"});
}

bool WindowClassification::isGoogleEditor(std::string_view bundleIdentifier) const {
  return isBrowser(bundleIdentifier) &&
         titleHasAny({"google docs", "google sheets", "google slides"});
}

bool WindowClassification::shouldSkipClipboardFallback(std::string_view bundleIdentifier,
                                                       SelectionTrigger trigger) const {
  if (trigger != SelectionTrigger::mouse) return false;
  const auto skip = [&](std::string_view canvas) {
    log_.log("bubble", "skip clipboard fallback on " + std::string(canvas) +
                           " canvas app=" + std::string(bundleIdentifier));
    return true;
  };
  if (isOfficeCanvas(bundleIdentifier)) return skip("Office");
  if (isGoogleCanvas(bundleIdentifier)) return skip("Google");
  return false;
}

void WindowClassification::enableAccessibility(std::set<std::int32_t>& enabledProcesses) const {
  const auto frontmost = workspace_.frontmostApplication();
  if (!frontmost || frontmost->processIdentifier < 1) return;
  // Two missing identifiers count as equal.
  if (frontmost->bundleIdentifier == application_.bundle().bundleIdentifier) return;
  if (!enabledProcesses.insert(frontmost->processIdentifier).second) return;
  const AccessibilityElement application =
      accessibility_.applicationElement(frontmost->processIdentifier);
  accessibility_.setMessagingTimeout(application, accessibilityTimeout);
  accessibility_.setAttribute(application, ax::manualAccessibility, true);
  accessibility_.setAttribute(application, ax::enhancedUserInterface, true);
}

}  // namespace quillo
