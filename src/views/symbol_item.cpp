#include "views/symbol_item.h"

#include <QPainter>

#include "views/symbols.h"

namespace quillo::views {

SymbolItem::SymbolItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
}

void SymbolItem::setName(const QString& name) {
  if (name == name_) return;
  name_ = name;
  path_ = symbol(name.toStdString());
  update();
  Q_EMIT nameChanged();
}

void SymbolItem::setColor(const QColor& color) {
  if (color == color_) return;
  color_ = color;
  update();
  Q_EMIT colorChanged();
}

void SymbolItem::paint(QPainter* painter) {
  painter->scale(width() / 24, height() / 24);
  painter->fillPath(path_, color_);
}

}  // namespace quillo::views
