#include "views/surface_item.h"

#include <QBitmap>
#include <QPainter>
#include <cmath>

namespace quillo::views {
namespace {

constexpr double borderWidth = 1;

// Where a corner begins, and where the handle of its curve lies, from the corner's tip in radii.
// The curve passes the middle of the corner where a circle of that radius would.
constexpr double cornerStart = 1.5;
constexpr double cornerHandle = 0.281;

QPainterPath roundedRectangle(const QRectF& box, double radius) {
  QPainterPath path;
  const double start = radius * cornerStart;
  if (start * 2 > box.height() || start * 2 > box.width()) {
    path.addRoundedRect(box, radius, radius);
    return path;
  }
  const double handle = radius * cornerHandle;
  const auto corner = [&](QPointF tip, QPointF from, QPointF to) {
    path.lineTo(tip + from * start);
    path.cubicTo(tip + from * handle, tip + to * handle, tip + to * start);
  };
  const QPointF right(1, 0), down(0, 1);
  path.moveTo(box.topLeft() + right * start);
  corner(box.topRight(), -right, down);
  corner(box.bottomRight(), -down, -right);
  corner(box.bottomLeft(), right, -down);
  corner(box.topLeft(), down, right);
  path.closeSubpath();
  return path;
}

}  // namespace

SurfaceItem::SurfaceItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
}

template <class T>
void SurfaceItem::assign(T& member, const T& value) {
  if (member == value) return;
  member = value;
  update();
  Q_EMIT appearanceChanged();
}

void SurfaceItem::setColor(const QColor& color) {
  assign(color_, color);
}

void SurfaceItem::setBorderColor(const QColor& color) {
  assign(borderColor_, color);
}

void SurfaceItem::setRadius(double radius) {
  assign(radius_, radius);
  Q_EMIT regionChanged();
}

void SurfaceItem::paint(QPainter* painter) {
  const QRectF box(0, 0, width(), height());
  painter->fillPath(roundedRectangle(box, radius_), color_);
  constexpr double inset = borderWidth / 2;
  painter->setPen(QPen(borderColor_, borderWidth));
  painter->drawPath(roundedRectangle(box.adjusted(inset, inset, -inset, -inset), radius_ - inset));
}

QRegion SurfaceItem::region() const {
  QBitmap covered(static_cast<int>(std::ceil(width())), static_cast<int>(std::ceil(height())));
  if (covered.isNull()) return {};
  covered.clear();
  QPainter(&covered).fillPath(roundedRectangle({0, 0, width(), height()}, radius_), Qt::color1);
  return QRegion(covered).translated(mapToScene({0, 0}).toPoint());
}

void SurfaceItem::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickPaintedItem::geometryChange(now, before);
  Q_EMIT regionChanged();
}

}  // namespace quillo::views
