#include "bubble/screen_places.h"

#include <algorithm>

namespace quillo {

std::optional<Rect> intersection(const Rect& a, const Rect& b) {
  const Point low{std::max(a.minX(), b.minX()), std::max(a.minY(), b.minY())};
  const Point high{std::min(a.maxX(), b.maxX()), std::min(a.maxY(), b.maxY())};
  if (!(low.x < high.x) || !(low.y < high.y)) return std::nullopt;
  return Rect{low, {high.x - low.x, high.y - low.y}};
}

bool intersects(const Rect& a, const Rect& b) {
  return intersection(a, b).has_value();
}

Rect grown(const Rect& rect, double margin) {
  return {{rect.minX() - margin, rect.minY() - margin},
          {rect.size.width + 2 * margin, rect.size.height + 2 * margin}};
}

std::optional<Screen> screenIntersecting(const Screens& screens, const Rect& rect) {
  for (const Screen& screen : screens.screens())
    if (intersects(screen.frame, rect)) return screen;
  return screens.mainScreen();
}

std::optional<Screen> screenContaining(const Screens& screens, Point point) {
  for (const Screen& screen : screens.screens())
    if (screen.frame.contains(point)) return screen;
  return screens.mainScreen();
}

AccessibilityPoint topLeftPoint(const Screens& screens, Point point) {
  const auto all = screens.screens();
  const auto atOrigin =
      std::ranges::find(all, Point{}, [](const Screen& screen) { return screen.frame.origin; });
  const auto primary = atOrigin != all.end() ? std::optional(*atOrigin) : screens.mainScreen();
  return {point.x, (primary ? primary->frame.size.height : 0) - point.y};
}

}  // namespace quillo
