#include "views/symbols.h"

#include <QPainterPathStroker>
#include <QPolygonF>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace quillo::views {
namespace {

constexpr QPointF center(12, 12);

// Joining paths breaks their curves into straight pieces, no fewer than the size asks for. So it is
// done at a size at which the pieces cannot be told from a curve.
constexpr double large = 16;

QPainterPath enlarged(const QPainterPath& path) {
  return QTransform::fromScale(large, large).map(path);
}

QPainterPath reduced(const QPainterPath& path) {
  return QTransform::fromScale(1 / large, 1 / large).map(path);
}

template <class... Paths>
QPainterPath united(const Paths&... paths) {
  return reduced((enlarged(paths) | ...));
}

QPainterPath without(const QPainterPath& area, const QPainterPath& hole) {
  return reduced(enlarged(area) - enlarged(hole));
}

// The line of `path` as an area, with round ends and corners.
QPainterPath line(const QPainterPath& path, double width) {
  QPainterPathStroker pen;
  pen.setWidth(width * large);
  pen.setCapStyle(Qt::RoundCap);
  pen.setJoinStyle(Qt::RoundJoin);
  return reduced(pen.createStroke(enlarged(path)).simplified());
}

QPainterPath line(std::initializer_list<QPointF> points, double width) {
  QPainterPath path(*points.begin());
  for (const QPointF& point : points) path.lineTo(point);
  return line(path, width);
}

QPainterPath disc(const QPointF& middle, double radius) {
  QPainterPath path;
  path.addEllipse(middle, radius, radius);
  return path;
}

QPainterPath ring(double radius, double width) {
  return without(disc(center, radius + width / 2), disc(center, radius - width / 2));
}

QPainterPath scaled(const QPainterPath& path, double factor) {
  QTransform about;
  about.translate(center.x(), center.y());
  about.scale(factor, factor);
  about.translate(-center.x(), -center.y());
  return about.map(path);
}

QPainterPath bar(double x, double height, double width) {
  return line({{x, 12 - height / 2 + width / 2}, {x, 12 + height / 2 - width / 2}}, width);
}

// A disc out of which the symbol is cut.
QPainterPath inDisc(const QPainterPath& symbol, double factor) {
  return without(disc(center, 10.5), scaled(symbol, factor));
}

QPainterPath microphone() {
  QPainterPath capsule;
  capsule.addRoundedRect(QRectF(8.5, 1.8, 7, 12.7), 3.5, 3.5);
  QPainterPath cradle;
  cradle.moveTo(5.2, 10.8);
  cradle.arcTo(QRectF(5.2, 4, 13.6, 13.6), 180, 180);
  return united(capsule, line(cradle, 1.9), line({{12, 17.6}, {12, 21.4}}, 1.9),
                line({{8.2, 21.4}, {15.8, 21.4}}, 1.9));
}

QPainterPath sparkle(const QPointF& middle, double radius) {
  // Sides drawn in towards the middle.
  const double waist = radius * 0.16;
  QPainterPath path(middle + QPointF(0, -radius));
  path.quadTo(middle + QPointF(waist, -waist), middle + QPointF(radius, 0));
  path.quadTo(middle + QPointF(waist, waist), middle + QPointF(0, radius));
  path.quadTo(middle + QPointF(-waist, waist), middle + QPointF(-radius, 0));
  path.quadTo(middle + QPointF(-waist, -waist), middle + QPointF(0, -radius));
  return united(path, line(path, 0.7));
}

QPainterPath sparkles() {
  return united(sparkle({9.6, 13.2}, 8), sparkle({18.8, 5}, 3.6), sparkle({19.6, 18.6}, 2.6));
}

QPainterPath exclamationMark() {
  return united(line({{12, 9.2}, {12, 13.8}}, 2.2), disc({12, 17.6}, 1.35));
}

QPainterPath warningTriangle() {
  QPainterPath outline;
  outline.addPolygon(QPolygonF({{12, 3.8}, {21, 19.4}, {3, 19.4}}));
  outline.closeSubpath();
  return without(united(outline, line(outline, 3.2)), exclamationMark());
}

QPainterPath checkmark() {
  return line({{4.2, 12.9}, {9.6, 18.4}, {19.8, 5.8}}, 2.7);
}

QPainterPath xmark() {
  return united(line({{5, 5}, {19, 19}}, 3), line({{19, 5}, {5, 19}}, 3));
}

QPainterPath upAndDown() {
  return united(line({{6.5, 9}, {12, 3.5}, {17.5, 9}}, 2.4),
                line({{6.5, 15}, {12, 20.5}, {17.5, 15}}, 2.4));
}

QPainterPath clockwiseArrow() {
  const QPointF tip(20.2, 9);
  QPainterPath turn;
  const QRectF circle(3.8, 4.6, 16, 16);
  turn.arcMoveTo(circle, -15);
  turn.arcTo(circle, -15, -300);
  turn.lineTo(tip);
  const QPainterPath head = line({tip - QPointF(0, 5.6), tip, tip - QPointF(5.6, 0)}, 2.2);
  return united(line(turn, 2.2), head);
}

QPainterPath globe() {
  QPainterPath meridian;
  meridian.addEllipse(center, 4.1, 9.2);
  return united(ring(9.2, 1.6), line(meridian, 1.6), line({{3.4, 9}, {20.6, 9}}, 1.5),
                line({{3.4, 15}, {20.6, 15}}, 1.5));
}

QPainterPath shield() {
  QPainterPath path(QPointF(12, 2.4));
  path.cubicTo(14.5, 4.2, 17, 5, 20, 5.2);
  path.cubicTo(20.6, 12.6, 18, 18.6, 12, 21.6);
  path.cubicTo(6, 18.6, 3.4, 12.6, 4, 5.2);
  path.cubicTo(7, 5, 9.5, 4.2, 12, 2.4);
  path.closeSubpath();
  return path;
}

QPainterPath checkedShield() {
  return united(line(shield(), 1.7), scaled(checkmark(), 0.5));
}

QPainterPath checkedDisc() {
  return inDisc(checkmark(), 0.58);
}

QPainterPath microphoneDisc() {
  return inDisc(microphone(), 0.64);
}

QPainterPath waveformRing() {
  QPainterPath bars;
  for (const auto& [x, height] : {QPointF(6.4, 4), {9.2, 8.5}, {12, 12}, {14.8, 8.5}, {17.6, 4}})
    bars.addPath(bar(x, height, 1.5));
  return united(ring(9.8, 1.5), bars);
}

QPainterPath downArrowDisc() {
  const QPainterPath arrow =
      united(line({{12, 5}, {12, 19}}, 2.8), line({{6.2, 13.2}, {12, 19}, {17.8, 13.2}}, 2.8));
  return inDisc(arrow, 0.66);
}

QPainterPath checkedRing() {
  return united(ring(9.2, 1.9), line({{7.6, 12.4}, {10.8, 15.6}, {16.4, 8.8}}, 2.1));
}

QPainterPath wandAndStars() {
  return united(line({{4, 20}, {14.6, 9.4}}, 2.6), sparkle({18, 6}, 4.4), sparkle({7, 6.4}, 2.8),
                sparkle({18.6, 16.6}, 2.8));
}

QPainterPath bulletList() {
  QPainterPath all;
  for (const double y : {6.0, 12.0, 18.0}) {
    all.addPath(disc({4.4, y}, 1.5));
    all.addPath(line({{9.4, y}, {20.6, y}}, 2));
  }
  return all;
}

QPainterPath downChevron() {
  return line({{4, 8}, {12, 16}, {20, 8}}, 3.4);
}

QPainterPath powerSwitch() {
  QPainterPath turn;
  const QRectF circle(4, 4.6, 16, 16);
  turn.arcMoveTo(circle, 55);
  turn.arcTo(circle, 55, -290);
  return united(line(turn, 2.2), line({{12, 2.6}, {12, 11.4}}, 2.2));
}

// Of growing dots, so that its turning is seen.
QPainterPath dottedRing() {
  QPainterPath dots;
  constexpr int count = 8;
  for (int i = 0; i < count; ++i) {
    const double angle = i * 2 * 3.14159265358979 / count;
    dots.addPath(disc(center + QPointF(std::cos(angle), std::sin(angle)) * 8.4, 0.8 + i * 0.18));
  }
  return dots;
}

struct Drawing {
  std::string_view name;
  QPainterPath (*draw)();
};
constexpr Drawing drawings[] = {
    {"mic.fill", microphone},
    {"sparkles", sparkles},
    {"exclamationmark.triangle.fill", warningTriangle},
    {"checkmark", checkmark},
    {"xmark", xmark},
    {"checkmark.circle", checkedRing},
    {"wand.and.stars", wandAndStars},
    {"list.bullet", bulletList},
    {"chevron.down", downChevron},
    {"power", powerSwitch},
    {"circle.dotted", dottedRing},
    {"chevron.up.chevron.down", upAndDown},
    {"arrow.clockwise", clockwiseArrow},
    {"globe", globe},
    {"checkmark.shield", checkedShield},
    {"checkmark.circle.fill", checkedDisc},
    {"mic.circle.fill", microphoneDisc},
    {"waveform.circle", waveformRing},
    {"arrow.down.circle.fill", downArrowDisc},
};

}  // namespace

QPainterPath symbol(std::string_view name) {
  const auto* const drawing = std::ranges::find(drawings, name, &Drawing::name);
  return drawing == std::end(drawings) ? QPainterPath() : drawing->draw();
}

}  // namespace quillo::views
