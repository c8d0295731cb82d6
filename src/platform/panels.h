// Small windows of this program that float above everything, on every workspace.
#pragma once

#include <functional>
#include <memory>

#include "base/time.h"
#include "platform/content.h"
#include "platform/geometry.h"

namespace quillo {

enum class PanelStyle {
  status,  // never takes the focus, not even when it is clicked
  dialog,  // takes keys; the user can move it by its background
};

enum class MouseEvents {
  accepted,
  ignored,  // clicks reach what lies below
};

// Hidden at first. Goes away with its owner.
class Panel {
 public:
  virtual ~Panel() = default;

  virtual bool isVisible() const = 0;
  virtual void orderFrontRegardless() = 0;
  // Takes the focus; a panel that is ordered out gives it back.
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;

  virtual Rect frame() const = 0;
  virtual void setFrameOrigin(Point bottomLeft) = 0;
  // The same, smoothly; a later call of either takes its place.
  virtual void animateFrameOrigin(Point bottomLeft, Duration duration) = 0;
  // The bottom left corner stays where it is.
  virtual void setContentSize(Size size) = 0;
  // What the content needs to be shown whole.
  virtual Size fittingSize() const = 0;

  virtual void setMouseEvents(MouseEvents events) = 0;

  // Opaque at first. Setting it also ends a fade; then `faded` is not called.
  virtual void setAlpha(double alpha) = 0;
  // Calls `faded` when the panel cannot be seen any more.
  virtual void fadeOut(Duration duration, std::function<void()> faded) = 0;
};

struct PanelDescription {
  Size contentSize;
  PanelStyle style = PanelStyle::status;
};

// Main thread. Outlives its panels.
class Panels {
 public:
  virtual ~Panels() = default;
  // `content` outlives the panel. Making one touches no screen.
  virtual std::unique_ptr<Panel> make(PanelDescription description, Content& content) = 0;
};

}  // namespace quillo
