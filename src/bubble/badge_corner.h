// Where a small mark may sit at the corner of a field without covering what can be pressed there.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/accessibility.h"
#include "platform/screens.h"

namespace quillo {

// Main thread. A field that stays where it is costs one search.
class BadgeCorner {
 public:
  // Whether an element is of this program.
  using IsOwn = std::function<bool(const AccessibilityElement&)>;

  BadgeCorner(Accessibility& accessibility, const Screens& screens, IsOwn isOwn)
      : accessibility_(accessibility), screens_(screens), isOwn_(std::move(isOwn)) {}

  // The bottom left corner of a mark of this size. `frame` is what can be seen of the field.
  Point fieldCornerOrigin(const AccessibilityElement& element, const Rect& frame, Size size);
  // The next field is searched whatever it is.
  void forget() { cache_.reset(); }

 private:
  struct Cached {
    AccessibilityElement element;
    Rect fieldFrame;
    Point origin;
  };

  Point originBelow(const Rect& frame, Size size) const;
  Point originInside(const AccessibilityElement& element, const Rect& frame, Size size) const;
  bool scrollsVertically(const AccessibilityElement& element) const;
  std::vector<Rect> obstaclesAround(const AccessibilityElement& element, const Rect& frame) const;
  std::optional<Rect> obstacle(const AccessibilityElement& node, const Rect& frame) const;
  // What really lies under the middle of the mark and can be pressed.
  std::optional<Rect> blockingAt(Point origin, Size size) const;
  Point freeOrigin(Point origin, const Rect& frame, Size size) const;

  Accessibility& accessibility_;
  const Screens& screens_;
  IsOwn isOwn_;
  std::optional<Cached> cache_;
};

}  // namespace quillo
