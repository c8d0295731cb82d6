// Where the bubble and the badge are drawn, plugged in from above. Neither takes the focus, and
// each is made at its first use.
#pragma once

#include "platform/screens.h"

namespace quillo {

// Main thread.
class BubblePanel {
 public:
  virtual ~BubblePanel() = default;

  virtual bool isVisible() const = 0;
  // Beside the rectangle of a selection.
  virtual void show(const Rect& beside) = 0;
  virtual void orderOut() = 0;
  // In the next turn: measured and placed anew.
  virtual void requestReposition() = 0;
};

// Main thread.
class BadgePanel {
 public:
  virtual ~BadgePanel() = default;

  virtual Size size() = 0;
  virtual bool isVisible() const = 0;
  virtual Rect frame() const = 0;
  virtual void show(Point origin) = 0;
  virtual void moveTo(Point origin) = 0;
  // Smoothly.
  virtual void glideTo(Point origin) = 0;
  virtual void orderOut() = 0;
};

}  // namespace quillo
