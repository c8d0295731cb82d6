#include "simulation/world/text_in_place.h"

#include "bubble/selection_rules.h"
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

TextInPlace::TextInPlace(const HostPorts& ports, Accessibility& accessibility,
                         MacClipboardGate& gate, Trace& trace)
    : workspace_(ports.workspace),
      trace_(trace),
      fields_(accessibility, ports.screens),
      windows_(accessibility, ports.workspace, ports.application, ports.log),
      clipboard_(ports.mainThread, ports.pasteboard, ports.keyPoster, ports.keyboardState, gate,
                 ports.log),
      bubble_(ports.mainThread, accessibility, ports.screens, ports.workspace, fields_, windows_,
              clipboard_, ports.log,
              {.show = [this](const SelectionCheck&) { setShown(true); },
               .orderOut = [this] { setShown(false); },
               .retryCheck = [](const SelectionCheck&) { return false; }}) {
  bubble_.start();
}

std::string TextInPlace::frontmostIdentifier() const {
  const auto frontmost = workspace_.frontmostApplication();
  return frontmost ? frontmost->bundleIdentifier.value_or("?") : "?";
}

void TextInPlace::setShown(bool isShown) {
  tellCapture();
  if (isShown != isShown_) trace_.tell(events::Bubble{isShown});
  isShown_ = isShown;
}

void TextInPlace::tellCapture() {
  const CapturedSelection& captured = bubble_.captured();
  if (captured.text == captureSeen_) return;
  captureSeen_ = captured.text;
  trace_.tell(events::Captured{captured.text, captured.app.value_or(""), captured.viaClipboard});
}

void TextInPlace::look(SelectionTrigger trigger) {
  windows_.enableAccessibility(enabledProcesses_);
  SelectionCheck check{.trigger = trigger,
                       .generation = bubble_.raiseGeneration(),
                       .element = bubble_.focusedElement(),
                       .app = frontmostIdentifier()};
  check.muteKey = "app:" + check.app;
  if (!check.element || isNonWritingApp(check.app) || windows_.isNonWritingDialog() ||
      fields_.isSensitiveContext(check.element) || !fields_.isWritingContext(check.element) ||
      fields_.isNonProseField(*check.element))
    return bubble_.hide();
  check.rect = bubble_.selectionBounds(*check.element).value_or(Rect{});
  auto text = bubble_.readSelectedText(*check.element);
  if (text && isAcceptedSelection(*text)) return bubble_.captureDirect(check, *std::move(text));
  if (windows_.shouldSkipClipboardFallback(check.app, trigger)) return bubble_.hide();
  bubble_.captureByClipboard(std::move(check));
}

void TextInPlace::clickBadge() {
  bubble_.hide();
  setShown(true);
  bubble_.captureForBadge(bubble_.focusedElement(), [this](bool) { tellCapture(); });
}

void TextInPlace::dismiss() {
  bubble_.hide();
  tellCapture();
}

std::string TextInPlace::verdictOn(const AccessibilityElement& element) const {
  const std::string app = frontmostIdentifier();
  const auto told = [](std::string_view what, const Verdict& verdict) {
    return std::string(what) + ": " + std::string(verdict.because);
  };
  if (const Verdict verdict = fields_.isSensitiveContext(element))
    return told("protected", verdict);
  if (windows_.isNonWritingDialog()) return "nothing: a dialog";
  if (isNonWritingApp(app)) return "nothing: an application in which nobody writes";
  const Verdict writing = fields_.isWritingContext(element);
  if (!writing) return told("nothing", writing);
  const Verdict nonProse = fields_.isNonProseField(element);
  const Verdict badge = fields_.isBadgeEligibleField(element, app, [](std::string_view) {});
  const bool hasBadge = badge && !isNoBadgeApp(app);
  if (nonProse) return told(hasBadge ? "badge" : "nothing", nonProse);
  if (hasBadge) return told("bubble and badge", nonProse);
  return badge ? "bubble: an application without a badge" : told("bubble", badge);
}

}  // namespace quillo::sim
