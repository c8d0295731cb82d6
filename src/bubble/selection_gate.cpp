#include "bubble/selection_gate.h"

#include <algorithm>

#include "bubble/screen_places.h"
#include "bubble/selection_rules.h"
#include "insertion/classification/application_classification.h"

namespace quillo {

SelectionGate::Outcome SelectionGate::decide(SelectionCheck check,
                                             const std::vector<std::string>& mutedContexts) const {
  Look look{std::move(check), mutedContexts, std::nullopt};
  look.check.element = reader_.focusedElement();
  if (look.isByMouse()) look.underMouse = elementUnderMouse();
  if (isRefused(look)) return {};

  if (look.check.element) {
    auto text = reader_.readSelectedText(*look.check.element);
    if (text && isAcceptedSelection(*text)) {
      if (const auto writing = writingElement(look))
        return decideDirect(look, *writing, *std::move(text));
    }
  }
  return decideCopy(look);
}

// --- What is no place for the bubble ---

bool SelectionGate::isRefused(const Look& look) const {
  const std::string& app = look.check.app;
  if (isSensitive(look)) {
    log_.log("bubble", "skip sensitive context app=" + app +
                           " trigger=" + std::string(nameOf(look.check.trigger)));
    return true;
  }
  if (windows_.isNonWritingDialog()) {
    log_.log("bubble", "skip non-writing dialog app=" + app);
    return true;
  }
  if (isNonWritingApp(app)) {
    log_.log("bubble", "skip non-writing app " + app);
    return true;
  }
  return false;
}

bool SelectionGate::isSensitive(const Look& look) const {
  const auto& judged = look.underMouse ? look.underMouse : look.check.element;
  return fields_.isSensitiveContext(judged).holds;
}

bool SelectionGate::mayWriteIn(const std::optional<AccessibilityElement>& element) const {
  return !fields_.isSensitiveContext(element) && fields_.isWritingContext(element);
}

bool SelectionGate::admits(Look& look, const AccessibilityElement& place,
                           std::string_view route) const {
  if (fields_.isNonProseField(place)) {
    log_.log("bubble", "skip non-prose field (" + std::string(route) + ") app=" + look.check.app);
    return false;
  }
  BubbleContext context = contexts_.contextKey(place, look.check.element, look.check.app);
  look.check.muteKey = std::move(context.key);
  look.check.label = std::move(context.label);
  return std::ranges::find(look.mutedContexts, look.check.muteKey) == look.mutedContexts.end();
}

// --- The text ---

std::optional<AccessibilityElement> SelectionGate::writingElement(const Look& look) const {
  if (mayWriteIn(look.check.element)) return look.check.element;
  return mayWriteIn(look.underMouse) ? look.underMouse : std::nullopt;
}

SelectionGate::Outcome SelectionGate::decideDirect(Look& look, const AccessibilityElement& writing,
                                                   std::string text) const {
  if (!admits(look, writing, "direct")) return {};
  look.check.rect = rectOf(look.check.element);
  return {Decision::show, std::move(look.check), std::move(text)};
}

SelectionGate::Outcome SelectionGate::decideCopy(Look& look) const {
  if (windows_.shouldSkipClipboardFallback(look.check.app, look.check.trigger)) return {};
  const auto judged = look.pointedAt();
  if (!judged || !mayWriteIn(judged)) return {Decision::lookAgain, std::move(look.check), {}};
  if (!admits(look, *judged, "clipboard")) return {};
  look.check.rect = rectOf(look.check.element);
  return {Decision::copy, std::move(look.check), {}};
}

// --- Where ---

Rect SelectionGate::rectOf(const std::optional<AccessibilityElement>& focused) const {
  const auto bounds = focused ? reader_.selectionBounds(*focused) : std::nullopt;
  return bounds.value_or(Rect{pointer_.location(), {1, 1}});
}

std::optional<AccessibilityElement> SelectionGate::elementUnderMouse() const {
  const auto hit = accessibility_.elementAtPosition(topLeftPoint(screens_, pointer_.location()));
  return hit ? std::optional(*hit) : std::nullopt;
}

}  // namespace quillo
