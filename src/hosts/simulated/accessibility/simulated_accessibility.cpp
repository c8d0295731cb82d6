#include "hosts/simulated/accessibility/simulated_accessibility.h"

#include <limits>

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;

constexpr Duration avoidance = 5s;  // of a program that let a call run out
constexpr double hugeLength = 1e300;
constexpr double elsewhere = 5000;

using FrameManner = ApplicationTree::FrameManner;
using SelectionManner = ApplicationTree::SelectionManner;

AccessibilityPoint inManner(AccessibilityPoint point, FrameManner manner) {
  if (manner == FrameManner::elsewhere) return {point.x + elsewhere, point.y + elsewhere};
  if (manner == FrameManner::notANumber) return {std::numeric_limits<double>::quiet_NaN(), point.y};
  return point;
}

Size inManner(Size size, FrameManner manner) {
  if (manner == FrameManner::negative) return {-size.width, -size.height};
  if (manner == FrameManner::huge) return {hugeLength, hugeLength};
  if (manner == FrameManner::notANumber)
    return {size.width, std::numeric_limits<double>::quiet_NaN()};
  return size;
}

AccessibilityAnswer elementAnswer(const TreeElement* element) {
  return element ? AccessibilityAnswer(AccessibilityValue(element->handle()))
                 : AccessibilityFailure::absent;
}

bool isBuilt(const ApplicationTree& tree) {
  return !tree.buildsOnRequest || tree.buildRequests > 0;
}

}  // namespace

// Nothing in a tree: the system, or an application that does not exist.
class SimulatedAccessibility::Named final : public AccessibilityElement::Reference {
 public:
  bool isSameThing(const Reference& other) const override { return this == &other; }
};

SimulatedAccessibility::SimulatedAccessibility(Timeline& timeline, SimulatedWorkspace& workspace,
                                               const SwitchedPermissions& permissions)
    : timeline_(timeline),
      workspace_(workspace),
      permissions_(permissions),
      systemWide_(std::make_shared<Named>()) {}

AccessibilityElement SimulatedAccessibility::applicationElement(std::int32_t processIdentifier) {
  if (SimulatedApplication* application = workspace_.applicationOf(processIdentifier))
    return application->tree().application().handle();
  return unknownApplications_
      .try_emplace(processIdentifier, AccessibilityElement(std::make_shared<Named>()))
      .first->second;
}

void SimulatedAccessibility::setMessagingTimeout(const AccessibilityElement& element,
                                                 Duration timeout) {
  if (element == systemWide_) {
    timeout_ = timeout;
  } else if (const auto process = TreeElement::processOf(element)) {
    timeouts_[*process] = timeout;
  }
}

Duration SimulatedAccessibility::timeoutOf(std::int32_t process) const {
  const auto own = timeouts_.find(process);
  return own == timeouts_.end() ? timeout_ : own->second;
}

// --- Reaching the program ---

bool SimulatedAccessibility::waitForAnswer(std::int32_t process, ApplicationTree& tree) {
  const auto avoided = avoidedUntil_.find(process);
  if (avoided != avoidedUntil_.end() && timeline_.now() < avoided->second) return false;
  ++calls_;
  if (atEachCall_) atEachCall_();
  const Duration timeout = timeoutOf(process);
  if (tree.isHung || tree.latency > timeout) {
    timeline_.block(timeout);
    avoidedUntil_.insert_or_assign(process, timeline_.now() + avoidance);
    return false;
  }
  if (tree.latency > Duration::zero()) timeline_.block(tree.latency);
  if (tree.callsUntilRebuilt && --*tree.callsUntilRebuilt <= 0) {
    tree.callsUntilRebuilt.reset();
    tree.rebuild();
  }
  return true;
}

SimulatedAccessibility::Reached SimulatedAccessibility::reach(const AccessibilityElement& element) {
  const auto process = TreeElement::processOf(element);
  SimulatedApplication* application = process ? workspace_.applicationOf(*process) : nullptr;
  if (!permissions_.isAccessibilityTrusted() || !application || !application->isRunning() ||
      !waitForAnswer(*process, application->tree()))
    return {.failure = AccessibilityFailure::cannotComplete};
  return {.element = TreeElement::of(element), .tree = &application->tree()};
}

// --- Reading ---

AccessibilityAnswer SimulatedAccessibility::systemAttribute(std::string_view name) {
  SimulatedApplication* front = workspace_.frontmost();
  if (name != ax::focusedUIElement || !front) return AccessibilityFailure::absent;
  const Reached reached = reach(front->tree().application().handle());
  if (!reached.element) return reached.failure;
  return isBuilt(*reached.tree) ? elementAnswer(reached.tree->focusedElement())
                                : AccessibilityFailure::absent;
}

AccessibilityAnswer SimulatedAccessibility::inManner(AccessibilityAnswer answer,
                                                     const ApplicationTree& tree) {
  if (const auto* point = answer.as<AccessibilityPoint>())
    return AccessibilityValue(simulated::inManner(*point, tree.frames));
  if (const auto* size = answer.as<Size>())
    return AccessibilityValue(simulated::inManner(*size, tree.frames));
  return answer;
}

AccessibilityAnswer SimulatedAccessibility::attribute(const AccessibilityElement& element,
                                                      std::string_view name) {
  if (element == systemWide_) return systemAttribute(name);
  const Reached reached = reach(element);
  if (!reached.element) return reached.failure;
  if (reached.element == &reached.tree->application()) {
    if (name == ax::focusedWindow) return elementAnswer(reached.tree->focusedWindow());
    if (name == ax::mainWindow) return elementAnswer(reached.tree->mainWindow());
  } else if (name == ax::children && !isBuilt(*reached.tree)) {
    return AccessibilityValue(AccessibilityList{});
  }
  return inManner(reached.element->attribute(name), *reached.tree);
}

AccessibilityAnswer SimulatedAccessibility::parameterizedAttribute(
    const AccessibilityElement& element, std::string_view name,
    const AccessibilityValue& parameter) {
  const Reached reached = reach(element);
  if (!reached.element) return reached.failure;
  const auto* range = std::get_if<TextRange>(&parameter);
  if (name != ax::boundsForRange || !range) return AccessibilityFailure::absent;
  const auto bounds = reached.element->boundsOf(*range);
  if (!bounds) return AccessibilityFailure::absent;
  const FrameManner manner = reached.tree->frames;
  return AccessibilityValue(AccessibilityRect{simulated::inManner(bounds->origin, manner),
                                              simulated::inManner(bounds->size, manner)});
}

Result<std::vector<std::string>, AccessibilityFailure> SimulatedAccessibility::attributeNames(
    const AccessibilityElement& element) {
  const Reached reached = reach(element);
  if (!reached.element) return reached.failure;
  return reached.element->attributeNames();
}

Result<bool, AccessibilityFailure> SimulatedAccessibility::isSettable(
    const AccessibilityElement& element, std::string_view name) {
  const Reached reached = reach(element);
  if (!reached.element) return reached.failure;
  return reached.element->isSettable(name);
}

// --- Changing ---

Result<void, AccessibilityFailure> SimulatedAccessibility::select(const Reached& reached,
                                                                  const AccessibilityValue& value) {
  const auto* range = std::get_if<TextRange>(&value);
  const SelectionManner manner = reached.tree->selection;
  if (!range || manner == SelectionManner::refused) return AccessibilityFailure::absent;
  if (manner == SelectionManner::ignored) return {};
  Editor& editor = *reached.element->editor();
  editor.select(*range);
  if (manner == SelectionManner::trimmed) editor.trimSelection();
  return {};
}

Result<void, AccessibilityFailure> SimulatedAccessibility::setAttribute(
    const AccessibilityElement& element, std::string_view name, const AccessibilityValue& value) {
  const Reached reached = reach(element);
  if (!reached.element) return reached.failure;
  if (name == ax::manualAccessibility || name == ax::enhancedUserInterface) {
    if (reached.element != &reached.tree->application()) return AccessibilityFailure::absent;
    ++reached.tree->buildRequests;
    return {};
  }
  if (name != ax::selectedTextRange || !reached.element->tellsText())
    return AccessibilityFailure::absent;
  return select(reached, value);
}

// --- Elements by their place and process ---

Result<AccessibilityElement, AccessibilityFailure> SimulatedAccessibility::elementAtPosition(
    AccessibilityPoint position) {
  for (SimulatedApplication* application : workspace_.frontToBack()) {
    TreeElement* window = application->tree().windowAt(position);
    if (!window) continue;
    const Reached reached = reach(window->handle());
    // Its windows may be others by now.
    window = reached.tree ? reached.tree->windowAt(position) : nullptr;
    if (!window) return reached.failure;
    return (isBuilt(*reached.tree) ? window->elementAt(position) : window)->handle();
  }
  return AccessibilityFailure::absent;
}

Result<std::int32_t, AccessibilityFailure> SimulatedAccessibility::processIdentifier(
    const AccessibilityElement& element) {
  const auto process = TreeElement::processOf(element);
  if (!process) return AccessibilityFailure::absent;
  return *process;
}

}  // namespace quillo::simulated
