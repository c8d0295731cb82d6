// Places on the screens.
#pragma once

#include <optional>

#include "platform/accessibility.h"
#include "platform/screens.h"

namespace quillo {

bool intersects(const Rect& a, const Rect& b);
// Nothing when they share nothing.
std::optional<Rect> intersection(const Rect& a, const Rect& b);
// Larger by `margin` on every side.
Rect grown(const Rect& rect, double margin);

// The first that the rectangle reaches into, or else the main one; nothing with neither.
std::optional<Screen> screenIntersecting(const Screens& screens, const Rect& rect);
// The one with this point, or else the main one.
std::optional<Screen> screenContaining(const Screens& screens, Point point);

// The same place, counted from the top of the screen at the origin, or else of the main one.
AccessibilityPoint topLeftPoint(const Screens& screens, Point point);

}  // namespace quillo
