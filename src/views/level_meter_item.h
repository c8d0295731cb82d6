// The level meter, drawn by itself so that a new level redraws nothing else.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QQuickPaintedItem>
#include <array>

#include "shell/status/hud_level_meter.h"

namespace quillo::views {

class LevelMeterItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(LevelMeter)
  Q_PROPERTY(float level READ level WRITE setLevel NOTIFY levelChanged)
  Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
  Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY darkChanged)

 public:
  explicit LevelMeterItem(QQuickItem* parent = nullptr);

  float level() const { return level_; }
  void setLevel(float level);
  bool isActive() const { return meter_.isActive(); }
  void setActive(bool isActive);
  bool isDark() const { return scheme_ == ColorScheme::dark; }
  void setDark(bool isDark);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void levelChanged();
  void activeChanged();
  void darkChanged();

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  using Levels = std::array<float, HUDLevelMeter::barCount>;

  void move(double progress);

  float level_ = 0;
  HUDLevelMeter meter_;
  ColorScheme scheme_ = ColorScheme::light;
  // The bars on their way from where they were to where they belong.
  Levels from_{};
  Levels shown_{};
  QElapsedTimer sinceLevel_;
  QBasicTimer frames_;
};

}  // namespace quillo::views
