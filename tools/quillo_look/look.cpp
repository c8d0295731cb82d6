#include "look.h"

#include <array>
#include <cstdio>

#include "base/text.h"
#include "bubble/selection_rules.h"
#include "insertion/classification/accessibility_reading.h"

namespace quillo::look {
namespace {

constexpr int mostAncestors = 12;

// Everything that the program asks of a field, but for its text.
constexpr std::array askedAttributes = {
    ax::role,
    ax::subrole,
    ax::roleDescription,
    ax::title,
    ax::description,
    ax::help,
    ax::placeholderValue,
    ax::identifier,
    ax::domIdentifier,
    ax::domClassList,
    ax::valueDescription,
    ax::url,
    ax::hasPopup,
    ax::valueProtected,
    ax::protectedContent,
    ax::position,
    ax::size,
    ax::editableAncestor,
    ax::labeledBy,
    ax::titleUIElement,
    ax::verticalScrollBar,
    ax::numberOfCharacters,
};

std::string inQuotes(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string number(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%g", value);
  return buffer;
}

struct Shown {
  std::string operator()(const std::string& text) const { return inQuotes(text); }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(double value) const { return number(value); }
  std::string operator()(const TextRange& range) const {
    return std::to_string(range.location) + '+' + std::to_string(range.length);
  }
  std::string operator()(const AccessibilityPoint& point) const {
    return number(point.x) + ',' + number(point.y);
  }
  std::string operator()(const Size& size) const {
    return number(size.width) + 'x' + number(size.height);
  }
  std::string operator()(const AccessibilityRect& rect) const {
    return (*this)(rect.origin) + ' ' + (*this)(rect.size);
  }
  std::string operator()(const AccessibilityURL& url) const { return url.absoluteText; }
  std::string operator()(const AccessibilityElement&) const { return "an element"; }
  std::string operator()(const AccessibilityList& list) const {
    std::string text;
    for (const AccessibilityValue& value : list) text += (text.empty() ? "" : " ") + shown(value);
    return '[' + text + ']';
  }
};

std::string roleOf(Accessibility& accessibility, const AccessibilityElement& element) {
  std::string role = textAttribute(accessibility, element, ax::role).value_or("?");
  if (const auto subrole = textAttribute(accessibility, element, ax::subrole)) {
    role += '/' + *subrole;
  }
  return role;
}

}  // namespace

std::string shown(const AccessibilityValue& value) {
  return std::visit(Shown(), static_cast<const AccessibilityValue::variant&>(value));
}

std::optional<AccessibilityElement> Looker::focused() {
  return elementAttribute(ports_.accessibility, ports_.accessibility.systemWideElement(),
                          ax::focusedUIElement);
}

Cost Looker::decide(std::vector<NamedVerdict>* verdicts) {
  const std::uint64_t callsBefore = ports_.waitedCalls();
  const MonotonicTime begun = ports_.mainThread.now();
  const auto front = ports_.workspace.frontmostApplication();
  const std::string application = front ? front->bundleIdentifier.value_or("?") : "?";
  std::vector<NamedVerdict> decided;
  const bool isDialog = ports_.windows.isNonWritingDialog();
  if (const auto element = focused()) {
    decided = {
        {"isProtectedField", fields_.isProtectedField(*element)},
        {"isSensitiveContext", fields_.isSensitiveContext(element)},
        {"isWritableTextElement", fields_.isWritableTextElement(*element)},
        {"isWritingContext", fields_.isWritingContext(element)},
        {"isNonProseField", fields_.isNonProseField(*element)},
        {"isBadgeEligibleField", fields_.isBadgeEligibleField(*element, application, [](auto) {})},
    };
  }
  decided.push_back({"isNonWritingDialog", {isDialog, "the focused window"}});
  const Cost cost{ports_.waitedCalls() - callsBefore,
                  toSeconds(ports_.mainThread.now() - begun) * 1000};
  if (verdicts) *verdicts = std::move(decided);
  return cost;
}

Look Looker::look() {
  Look look;
  look.deciding = decide(&look.verdicts);
  look.decidingAgain = decide();
  const auto front = ports_.workspace.frontmostApplication();
  look.application = front ? front->bundleIdentifier.value_or("?") : "?";
  look.processIdentifier = front ? front->processIdentifier : 0;
  look.window = ports_.windows.focusedWindowTitle();
  look.isNonWritingDialog = look.verdicts.back().verdict.holds;
  const auto element = focused();
  look.hasFocus = element.has_value();
  if (!element) return look;
  describe(look, *element);
  if (!fields_.isSensitiveContext(element)) readText(look, *element);
  return look;
}

void Looker::describe(Look& look, const AccessibilityElement& element) {
  for (const std::string_view name : askedAttributes) {
    const AccessibilityAnswer answer = ports_.accessibility.attribute(element, name);
    if (answer) look.attributes.emplace_back(name, shown(*answer));
  }
  const auto settable = ports_.accessibility.isSettable(element, ax::value);
  look.attributes.emplace_back("AXValue settable",
                               settable ? (*settable ? "true" : "false") : "not told");
  auto above = elementAttribute(ports_.accessibility, element, ax::parent);
  for (int level = 0; level < mostAncestors && above; ++level) {
    look.ancestors.push_back(roleOf(ports_.accessibility, *above));
    above = elementAttribute(ports_.accessibility, *above, ax::parent);
  }
}

void Looker::readText(Look& look, const AccessibilityElement& element) {
  look.selection = rangeAttribute(ports_.accessibility, element, ax::selectedTextRange);
  look.selectedText = textAttribute(ports_.accessibility, element, ax::selectedText);
  if (!look.selection) return;
  const AccessibilityAnswer bounds =
      ports_.accessibility.parameterizedAttribute(element, ax::boundsForRange, *look.selection);
  if (const auto* rect = bounds.as<AccessibilityRect>()) {
    look.selectionRect = screenRect(ports_.screens, *rect);
  }
  const auto text = textAttribute(ports_.accessibility, element, ax::value);
  if (!text) return;
  const std::u16string units = toUtf16(*text);
  look.paragraph = paragraphAt(units, look.selection->location);
  if (!look.paragraph) return;
  look.paragraphText = fromUtf16(
      std::u16string_view(units).substr(static_cast<std::size_t>(look.paragraph->location),
                                        static_cast<std::size_t>(look.paragraph->length)));
}

}  // namespace quillo::look
