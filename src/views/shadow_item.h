// The soft shadow of a panel's ground.
#pragma once

#include <QImage>
#include <QQuickPaintedItem>

namespace quillo::views {

// Its box is that of the ground and `extent` around it. Nothing is drawn below the ground, which
// lets light through.
class ShadowItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(Shadow)
  Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY appearanceChanged)
  Q_PROPERTY(double extent READ extent WRITE setExtent NOTIFY appearanceChanged)

 public:
  explicit ShadowItem(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

  double radius() const { return radius_; }
  void setRadius(double radius);
  double extent() const { return extent_; }
  void setExtent(double extent);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void appearanceChanged();

 private:
  QImage draw() const;

  double radius_ = 0;
  double extent_ = 0;
};

}  // namespace quillo::views
