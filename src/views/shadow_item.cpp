#include "views/shadow_item.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "views/rounded_box.h"

namespace quillo::views {
namespace {

// One light from above, and the dark line where the panel all but touches what it lies on.
struct Layer {
  double opacity;
  double blur;  // how far it reaches, in parts of the extent
  double drop;
};
constexpr Layer layers[] = {{0.24, 0.9, 5}, {0.14, 0.25, 1}};

double opacityOf(const Layer& layer, double distance, double extent) {
  const double reach = layer.blur * extent;
  const double closeness = std::clamp(1 - (distance + reach / 3) / (reach * 4 / 3), 0.0, 1.0);
  return layer.opacity * closeness * closeness * closeness;
}

}  // namespace

void ShadowItem::setRadius(double radius) {
  radius_ = radius;
  update();
  Q_EMIT appearanceChanged();
}

void ShadowItem::setExtent(double extent) {
  extent_ = extent;
  update();
  Q_EMIT appearanceChanged();
}

QImage ShadowItem::draw() const {
  QImage image(QSize(static_cast<int>(std::ceil(width())), static_cast<int>(std::ceil(height()))),
               QImage::Format_Alpha8);
  const QPointF middle(width() / 2, height() / 2);
  const RoundedBox ground{width() / 2 - extent_, height() / 2 - extent_, radius_};
  for (int y = 0; y < image.height(); ++y) {
    uchar* const row = image.scanLine(y);
    for (int x = 0; x < image.width(); ++x) {
      const QPointF point = QPointF(x + 0.5, y + 0.5) - middle;
      const double outside = 1 - ground.coverage(point.x(), point.y());
      double opacity = 0;
      for (const Layer& layer : layers) {
        if (outside == 0) break;
        const double distance = ground.distanceTo(point.x(), point.y() - layer.drop);
        opacity += opacityOf(layer, distance, extent_);
      }
      row[x] = static_cast<uchar>(std::lround(255 * outside * opacity));
    }
  }
  return image;
}

void ShadowItem::paint(QPainter* painter) {
  if (!isVisible()) return;
  painter->drawImage(0, 0, draw());
}

}  // namespace quillo::views
