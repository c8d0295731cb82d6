// Places and lengths on the screens.
#pragma once

namespace quillo {

// Lengths are in the desktop's logical pixels. Rectangles lie in one plane for all screens, whose
// origin is the bottom left corner of the primary screen; y grows upwards.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;  // bottom left
  Size size;

  double midX() const { return origin.x + size.width / 2; }
  double midY() const { return origin.y + size.height / 2; }
  double minX() const { return origin.x; }
  double minY() const { return origin.y; }
  double maxX() const { return origin.x + size.width; }
  double maxY() const { return origin.y + size.height; }
  bool contains(Point point) const {
    return point.x >= origin.x && point.x < maxX() && point.y >= origin.y && point.y < maxY();
  }
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace quillo
