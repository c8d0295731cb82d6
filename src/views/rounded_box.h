// Coverage of pixels by boxes with round corners.
#pragma once

#include <algorithm>
#include <cmath>

namespace quillo::views {

// Around the origin. Lengths are in pixels.
struct RoundedBox {
  double halfWidth = 0;
  double halfHeight = 0;
  double radius = 0;

  // Of a point from the outline; negative inside.
  double distanceTo(double x, double y) const {
    const double beyondX = std::abs(x) - halfWidth + radius;
    const double beyondY = std::abs(y) - halfHeight + radius;
    const double outX = std::max(beyondX, 0.0), outY = std::max(beyondY, 0.0);
    return std::sqrt(outX * outX + outY * outY) + std::min(std::max(beyondX, beyondY), 0.0) -
           radius;
  }
  // The share of the pixel around a point that the box covers.
  double coverage(double x, double y) const { return std::clamp(0.5 - distanceTo(x, y), 0.0, 1.0); }
};

}  // namespace quillo::views
