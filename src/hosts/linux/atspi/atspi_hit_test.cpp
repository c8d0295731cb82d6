#include "hosts/linux/atspi/atspi_hit_test.h"

#include <algorithm>
#include <vector>

namespace quillo::linux_host {
namespace {

constexpr int mostSteps = 32;
constexpr std::size_t mostChildrenByPlace = 64;
constexpr uint screenCoordinates = 0;

bool contains(const PixelRect& rect, std::int32_t x, std::int32_t y) {
  return rect.width > 0 && rect.height > 0 && x >= rect.x && y >= rect.y &&
         std::int64_t{x} - rect.x < rect.width && std::int64_t{y} - rect.y < rect.height;
}

AtspiCall extentsCall(const ObjectReference& object) {
  return {object, atspi::component, "GetExtents", {QVariant(screenCoordinates)}};
}

// Toolkits stop at what they only arrange other objects with.
bool onlyHolds(AtspiRole role) {
  switch (role) {
    case AtspiRole::filler:
    case AtspiRole::frame:
    case AtspiRole::panel:
    case AtspiRole::pageTab:
    case AtspiRole::pageTabList:
    case AtspiRole::rootPane:
    case AtspiRole::scrollPane:
    case AtspiRole::splitPane:
    case AtspiRole::viewport:
      return true;
    default:
      return false;
  }
}

}  // namespace

ObjectReference AtspiHitTest::objectAt(std::int32_t x, std::int32_t y) {
  const auto window = windows_.at(x, y);
  if (!window) return {};
  ObjectReference object = windowAt(*window, x, y);
  if (object.isNull()) return {};
  // GTK 4 knows no place on the screen.
  if (applications_.toolkitOf(object.bus) == Toolkit::gtk4) {
    x -= window->x;
    y -= window->y;
  }
  std::vector<ObjectReference> visited = {object};
  for (int step = 0; step < mostSteps; ++step) {
    const ObjectReference inner = childAt(object, x, y);
    if (inner.isNull() || std::ranges::find(visited, inner) != visited.end()) break;
    visited.push_back(inner);
    object = inner;
  }
  // A pane within a view is not what the user sees.
  const ObjectKind* kind = objects_.kindOf(object);
  if (kind == nullptr || kind->role != AtspiRole::filler || kind->parent.isNull()) return object;
  const ObjectReference above = kind->parent;
  kind = objects_.kindOf(above);
  return kind != nullptr && kind->states.has(AtspiState::editable) ? above : object;
}

ObjectReference AtspiHitTest::windowAt(const DesktopWindow& window, std::int32_t x,
                                       std::int32_t y) {
  const std::string title = windows_.title(window);
  ObjectReference best;
  for (const std::string& bus : applications_.ofProcess(window.processIdentifier)) {
    const bool isRelative = applications_.toolkitOf(bus) == Toolkit::gtk4;
    for (const ObjectReference& candidate : focus_.windowsOf(bus)) {
      const auto place = objects_.placeOf(candidate);
      if (!place) continue;
      if (!contains(*place, isRelative ? x - window.x : x, isRelative ? y - window.y : y)) continue;
      const ObjectWords* words = objects_.wordsOf(candidate);
      const bool isNamed = words != nullptr && words->name == title;
      if (best.isNull() || isNamed) best = candidate;
    }
  }
  return best;
}

ObjectReference AtspiHitTest::childAt(const ObjectReference& object, std::int32_t x,
                                      std::int32_t y) {
  auto child = referenceIn(bus_.askOne({object,
                                        atspi::component,
                                        "GetAccessibleAtPoint",
                                        {QVariant(x), QVariant(y), QVariant(screenCoordinates)}}));
  if (child && !child->isNull() && *child != object) return *child;
  const ObjectKind* kind = objects_.kindOf(object);
  if (kind == nullptr || !onlyHolds(kind->role)) return {};
  return childByPlace(object, x, y);
}

// The last child is drawn over the others.
ObjectReference AtspiHitTest::childByPlace(const ObjectReference& object, std::int32_t x,
                                           std::int32_t y) {
  auto children = objects_.childrenOf(object).value_or(std::vector<ObjectReference>());
  if (children.size() > mostChildrenByPlace) children.resize(mostChildrenByPlace);
  std::vector<AtspiCall> calls;
  for (const ObjectReference& child : children) {
    calls.push_back(extentsCall(child));
    calls.push_back({child, atspi::accessible, "GetState"});
  }
  const auto replies = bus_.ask(calls);
  ObjectReference found;
  for (std::size_t i = 0; i + 1 < replies.size(); i += 2) {
    const auto place = rectangleIn(replies[i]);
    const auto states = statesIn(replies[i + 1]);
    if (place && states && states->has(AtspiState::visible) && contains(*place, x, y)) {
      found = children[i / 2];
    }
  }
  return found;
}

}  // namespace quillo::linux_host
