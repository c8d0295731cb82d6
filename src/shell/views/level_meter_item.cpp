#include "shell/views/level_meter_item.h"

#include <QEasingCurve>
#include <QPainter>
#include <cmath>

#include "shell/views/theme.h"

namespace quillo::views {
namespace {

constexpr int motionMilliseconds = 120;

}  // namespace

LevelMeterItem::LevelMeterItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  motion_.setStartValue(0.0);
  motion_.setEndValue(1.0);
  motion_.setDuration(motionMilliseconds);
  motion_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&motion_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { move(value.toDouble()); });
}

void LevelMeterItem::setLevel(float level) {
  if (level == level_) return;
  level_ = level;
  meter_.setLevel(level);
  if (isActive()) {
    from_ = shown_;
    motion_.stop();
    motion_.start();
  }
  Q_EMIT levelChanged();
}

void LevelMeterItem::setActive(bool isActive) {
  if (isActive == meter_.isActive()) return;
  meter_.setActive(isActive);
  motion_.stop();
  move(1);
  Q_EMIT activeChanged();
}

void LevelMeterItem::setDark(bool isDark) {
  if (isDark == this->isDark()) return;
  scheme_ = isDark ? ColorScheme::dark : ColorScheme::light;
  update();
  Q_EMIT darkChanged();
}

void LevelMeterItem::move(double progress) {
  for (std::size_t i = 0; i < shown_.size(); ++i)
    shown_[i] = std::lerp(from_[i], meter_.levels()[i], static_cast<float>(progress));
  update();
}

void LevelMeterItem::paint(QPainter* painter) {
  const double barWidth = HUDLevelMeter::barWidth(width());
  const double step = barWidth + HUDLevelMeter::spacing;
  painter->setPen(Qt::NoPen);
  painter->setBrush(toQt(meter_.barColor(scheme_)));
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const double barHeight = HUDLevelMeter::barHeight(shown_[i], height());
    const QRectF bar(static_cast<double>(i) * step, (height() - barHeight) / 2, barWidth,
                     barHeight);
    painter->drawRoundedRect(bar, barWidth / 2, barWidth / 2);
  }
}

}  // namespace quillo::views
