#include "bubble/badge_corner.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <string_view>

#include "bubble/screen_places.h"
#include "insertion/classification/accessibility_reading.h"

namespace quillo {
namespace {

constexpr std::string_view pressableRoles[] = {"AXButton",   "AXPopUpButton",       "AXMenuButton",
                                               "AXImage",    "AXCheckBox",          "AXRadioButton",
                                               "AXComboBox", "AXDisclosureTriangle"};
constexpr std::string_view linkRole = "AXLink";

constexpr double sameFrame = 8;
constexpr double singleLine = 44;
constexpr double gap = 4;  // between a field and a mark outside it
constexpr double edge = 2;
constexpr double inset = 6;  // of a mark inside a field
constexpr double scrollBarInset = 20;

constexpr int searchDepth = 6;
constexpr int searchedNodes = 300;
constexpr std::size_t keptObstacles = 10;
constexpr double leastObstacle = 4;
constexpr double largestObstacle = 70;
constexpr double cornerWidth = 140;
constexpr double cornerHeight = 90;
constexpr int attempts = 3;
constexpr double clearance = 3;
constexpr double farLeft = 80;

constexpr int climbedLevels = 4;
constexpr Size largestBlock{240, 120};

bool isPressable(std::string_view role) {
  return std::ranges::find(pressableRoles, role) != std::end(pressableRoles);
}

bool isSameFrame(const Rect& a, const Rect& b) {
  return std::abs(a.minX() - b.minX()) < sameFrame && std::abs(a.minY() - b.minY()) < sameFrame &&
         std::abs(a.size.width - b.size.width) < sameFrame &&
         std::abs(a.size.height - b.size.height) < sameFrame;
}

const Rect* firstMet(const std::vector<Rect>& obstacles, const Rect& mark) {
  const auto met = std::ranges::find_if(
      obstacles,
      [area = grown(mark, clearance)](const Rect& each) { return intersects(area, each); });
  return met == obstacles.end() ? nullptr : &*met;
}

// Above the obstacles that reach into the right end of the field.
double aboveObstacles(const std::vector<Rect>& obstacles, const Rect& frame) {
  std::optional<double> top;
  for (const Rect& each : obstacles)
    if (each.maxX() > frame.maxX() - cornerWidth && each.minX() < frame.maxX())
      top = std::max(top.value_or(each.maxY()), each.maxY());
  return top.value_or(frame.minY()) + inset;
}

Point besideOrigin(const Rect& frame, Size size) {
  return {frame.maxX() - size.width - edge, frame.minY() - gap - size.height};
}

}  // namespace

Point BadgeCorner::fieldCornerOrigin(const AccessibilityElement& element, const Rect& frame,
                                     Size size) {
  if (cache_ && cache_->element == element && isSameFrame(cache_->fieldFrame, frame))
    return cache_->origin;
  const Point wanted = frame.size.height <= singleLine ? originBelow(frame, size)
                                                       : originInside(element, frame, size);
  const Point origin = freeOrigin(wanted, frame, size);
  cache_ = Cached{element, frame, origin};
  return origin;
}

Point BadgeCorner::originBelow(const Rect& frame, Size size) const {
  Point origin = besideOrigin(frame, size);
  const auto screen = screenIntersecting(screens_, frame);
  if (screen && origin.y < screen->visibleFrame.minY() + edge) origin.y = frame.maxY() + gap;
  return origin;
}

Point BadgeCorner::originInside(const AccessibilityElement& element, const Rect& frame,
                                Size size) const {
  const double right =
      frame.maxX() - (scrollsVertically(element) ? scrollBarInset : inset) - size.width;
  Point origin{right, frame.minY() + inset};
  const std::vector<Rect> obstacles = obstaclesAround(element, frame);
  for (int i = 0; i < attempts; ++i) {
    const Rect* met = firstMet(obstacles, {origin, size});
    if (!met) break;
    origin.x = met->minX() - size.width - inset;
  }
  if (firstMet(obstacles, {origin, size})) origin = {right, aboveObstacles(obstacles, frame)};
  if (origin.x < frame.minX() + edge || origin.y + size.height > frame.maxY() - edge)
    return besideOrigin(frame, size);
  return origin;
}

bool BadgeCorner::scrollsVertically(const AccessibilityElement& element) const {
  if (accessibility_.attribute(element, ax::verticalScrollBar).has_value()) return true;
  const auto parent = elementAttribute(accessibility_, element, ax::parent);
  return parent && textAttribute(accessibility_, *parent, ax::role) == "AXScrollArea";
}

// --- Obstacles ---

std::vector<Rect> BadgeCorner::obstaclesAround(const AccessibilityElement& element,
                                               const Rect& frame) const {
  struct Node {
    AccessibilityElement element;
    int depth;
  };
  const auto parent = elementAttribute(accessibility_, element, ax::parent);
  if (!parent) return {};
  const auto grandparent = elementAttribute(accessibility_, *parent, ax::parent);
  std::deque<Node> pending = {{grandparent.value_or(*parent), 0}};
  std::vector<Rect> found;
  for (int nodes = 0; !pending.empty() && nodes < searchedNodes && found.size() < keptObstacles;
       ++nodes) {
    const Node node = pending.front();
    pending.pop_front();
    if (const auto rect = obstacle(node.element, frame)) found.push_back(*rect);
    if (node.depth == searchDepth) continue;
    const AccessibilityAnswer children = accessibility_.attribute(node.element, ax::children);
    if (const auto* list = children.as<AccessibilityList>())
      for (const AccessibilityValue& child : *list)
        if (const auto* below = std::get_if<AccessibilityElement>(&child))
          pending.push_back({*below, node.depth + 1});
  }
  return found;
}

std::optional<Rect> BadgeCorner::obstacle(const AccessibilityElement& node,
                                          const Rect& frame) const {
  const auto role = textAttribute(accessibility_, node, ax::role);
  if (!role || !isPressable(*role)) return std::nullopt;
  const auto rect = elementFrame(accessibility_, screens_, node);
  const auto isSmall = [](double length) {
    return length > leastObstacle && length <= largestObstacle;
  };
  if (!rect || !isSmall(rect->size.width) || !isSmall(rect->size.height)) return std::nullopt;
  const bool isInCorner =
      rect->maxX() > frame.maxX() - cornerWidth && rect->minY() < frame.minY() + cornerHeight;
  return isInCorner ? rect : std::nullopt;
}

// --- What is really there ---

std::optional<Rect> BadgeCorner::blockingAt(Point origin, Size size) const {
  const Rect mark{origin, size};
  const auto hit =
      accessibility_.elementAtPosition(topLeftPoint(screens_, {mark.midX(), mark.midY()}));
  if (!hit || isOwn_(*hit)) return std::nullopt;
  std::optional<AccessibilityElement> level = *hit;
  for (int i = 0; level && i < climbedLevels; ++i) {
    const auto role = textAttribute(accessibility_, *level, ax::role);
    if (role && (isPressable(*role) || *role == linkRole)) {
      const auto frame = elementFrame(accessibility_, screens_, *level);
      if (frame && frame->size.width <= largestBlock.width &&
          frame->size.height <= largestBlock.height)
        return frame;
    }
    level = elementAttribute(accessibility_, *level, ax::parent);
  }
  return std::nullopt;
}

Point BadgeCorner::freeOrigin(Point origin, const Rect& frame, Size size) const {
  auto blocking = blockingAt(origin, size);
  if (!blocking) return origin;
  Point tried = origin;
  for (int i = 0; i < attempts; ++i) {
    tried.x = blocking->minX() - (size.width + inset);
    if (tried.x < frame.minX() - farLeft) break;
    blocking = blockingAt(tried, size);
    if (!blocking) return tried;
  }
  Point beside = besideOrigin(frame, size);
  if (origin.y < frame.minY()) beside.y = frame.maxY() + gap;
  return blockingAt(beside, size) ? origin : beside;
}

}  // namespace quillo
