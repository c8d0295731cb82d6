// The ground of a panel.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QRegion>

namespace quillo::views {

// A rectangle whose corners bend with a curvature that grows and falls without a jump, or a
// capsule where the radius is half of the height. Its border lies inside.
class SurfaceItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(Surface)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY appearanceChanged)
  Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY appearanceChanged)
  Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY appearanceChanged)

 public:
  explicit SurfaceItem(QQuickItem* parent = nullptr);

  QColor color() const { return color_; }
  void setColor(const QColor& color);
  QColor borderColor() const { return borderColor_; }
  void setBorderColor(const QColor& color);
  double radius() const { return radius_; }
  void setRadius(double radius);
  void paint(QPainter* painter) override;

  // The pixels of the window that it covers by half or more.
  QRegion region() const;

 Q_SIGNALS:
  void appearanceChanged();
  void regionChanged();

 protected:
  void geometryChange(const QRectF& now, const QRectF& before) override;

 private:
  template <class T>
  void assign(T& member, const T& value);

  QColor color_;
  QColor borderColor_;
  double radius_ = 0;
};

}  // namespace quillo::views
