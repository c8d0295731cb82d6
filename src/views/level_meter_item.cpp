#include "views/level_meter_item.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>

#include "views/rounded_box.h"
#include "views/theme.h"

namespace quillo::views {
namespace {

constexpr double motionMilliseconds = 120;
// Smooth for bars this small, at less than half of the work that every frame of the screen would
// be.
constexpr int frameMilliseconds = 40;

double easeOut(double progress) {
  return 1 - std::pow(1 - std::min(progress, 1.0), 3);
}

// `color` on a share of a pixel, 0...1.
QRgb shade(QRgb color, double share) {
  const double opacity = share * qAlpha(color) / 255;
  const auto part = [opacity](int channel) { return static_cast<int>(channel * opacity + 0.5); };
  return qRgba(part(qRed(color)), part(qGreen(color)), part(qBlue(color)), part(255));
}

// Around the column `middle`, half way up the picture.
void drawBar(QImage& image, const RoundedBox& bar, double middle, QRgb color) {
  const double halfWay = image.height() / 2.0;
  const int left = std::max(0, static_cast<int>(middle - bar.halfWidth - 0.5));
  const int right = std::min(image.width(), static_cast<int>(middle + bar.halfWidth + 1.5));
  const int top = std::max(0, static_cast<int>(halfWay - bar.halfHeight - 0.5));
  // The upper half; the lower one is its mirror, and between the round ends every row is the same.
  const double straight = halfWay - (bar.halfHeight - bar.radius) + 0.5;
  for (int y = top; y < halfWay; ++y) {
    auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
    const auto* const above =
        reinterpret_cast<const QRgb*>(image.constScanLine(std::max(y - 1, 0)));
    const bool isAsAbove = y > top && y > straight;
    for (int x = left; x < right; ++x)
      row[x] =
          isAsAbove ? above[x] : shade(color, bar.coverage(x + 0.5 - middle, y + 0.5 - halfWay));
    auto* const mirrored = image.scanLine(image.height() - 1 - y);
    std::copy(row + left, row + right, reinterpret_cast<QRgb*>(mirrored) + left);
  }
}

}  // namespace

LevelMeterItem::LevelMeterItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
}

void LevelMeterItem::setLevel(float level) {
  if (level == level_) return;
  level_ = level;
  meter_.setLevel(level);
  if (isActive()) {
    from_ = shown_;
    sinceLevel_.start();
    if (!frames_.isActive()) frames_.start(frameMilliseconds, Qt::PreciseTimer, this);
  }
  Q_EMIT levelChanged();
}

void LevelMeterItem::setActive(bool isActive) {
  if (isActive == meter_.isActive()) return;
  meter_.setActive(isActive);
  frames_.stop();
  move(1);
  Q_EMIT activeChanged();
}

void LevelMeterItem::setDark(bool isDark) {
  if (isDark == this->isDark()) return;
  scheme_ = isDark ? ColorScheme::dark : ColorScheme::light;
  update();
  Q_EMIT darkChanged();
}

void LevelMeterItem::timerEvent(QTimerEvent*) {
  const double progress = static_cast<double>(sinceLevel_.elapsed()) / motionMilliseconds;
  if (progress >= 1) frames_.stop();
  move(easeOut(progress));
}

void LevelMeterItem::move(double progress) {
  for (std::size_t i = 0; i < shown_.size(); ++i)
    shown_[i] = std::lerp(from_[i], meter_.levels()[i], static_cast<float>(progress));
  update();
}

// Drawn pixel by pixel, which costs a third of what as many paths would.
void LevelMeterItem::paint(QPainter* painter) {
  const double scale = window()->effectiveDevicePixelRatio();
  QImage image(QSize(static_cast<int>(std::ceil(width() * scale)),
                     static_cast<int>(std::ceil(height() * scale))),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const double barWidth = HUDLevelMeter::barWidth(width());
  const double step = barWidth + HUDLevelMeter::spacing;
  const QRgb color = toQt(meter_.barColor(scheme_)).rgba();
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const double barHeight = HUDLevelMeter::barHeight(shown_[i], height());
    const RoundedBox bar{barWidth * scale / 2, barHeight * scale / 2,
                         std::min(barWidth, barHeight) * scale / 2};
    drawBar(image, bar, (static_cast<double>(i) * step + barWidth / 2) * scale, color);
  }
  image.setDevicePixelRatio(scale);
  painter->drawImage(0, 0, image);
}

}  // namespace quillo::views
