#include "views/bar_icon.h"

#include <QPainter>
#include <QPixmap>

#include "views/symbols.h"

namespace quillo::views {
namespace {

constexpr int sizes[] = {16, 22, 24, 32, 48};

struct DiscColor {
  std::string_view symbol;
  QRgb color;
};
constexpr DiscColor discColors[] = {
    {"mic.circle.fill", 0xffe5383b},
    {"arrow.down.circle.fill", 0xff2f7bf6},
};
constexpr QRgb restingColor = 0xff3f4350;

QRgb discColor(std::string_view symbol) {
  for (const DiscColor& disc : discColors) {
    if (disc.symbol == symbol) return disc.color;
  }
  return restingColor;
}

QPixmap draw(std::string_view name, int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / 24.0, size / 24.0);
  QPainterPath disc;
  disc.addEllipse(QPointF(12, 12), 11.5, 11.5);
  painter.fillPath(disc, QColor::fromRgba(discColor(name)));
  // A symbol that fills a disc of its own is white where that one is cut out.
  const QPainterPath drawn = symbol(name);
  painter.fillPath(name.ends_with(".fill") ? disc - drawn : drawn, Qt::white);
  return pixmap;
}

}  // namespace

QIcon barIcon(std::string_view symbol) {
  QIcon icon;
  for (const int size : sizes) icon.addPixmap(draw(symbol, size));
  return icon;
}

}  // namespace quillo::views
