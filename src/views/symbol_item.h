// A symbol in one colour.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QString>

namespace quillo::views {

// Fills the square of its width and height.
class SymbolItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(Symbol)
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

 public:
  explicit SymbolItem(QQuickItem* parent = nullptr);

  QString name() const { return name_; }
  void setName(const QString& name);
  QColor color() const { return color_; }
  void setColor(const QColor& color);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void nameChanged();
  void colorChanged();

 private:
  QString name_;
  QColor color_;
  QPainterPath path_;
};

}  // namespace quillo::views
