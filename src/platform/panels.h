// Small windows of this program that float above everything, on every workspace.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/time.h"
#include "platform/screens.h"

namespace quillo {

// The key that presses a control wherever the focus is inside its panel.
enum class KeyEquivalent {
  none,
  defaultAction,  // Return
  cancelAction,   // Escape
};

// Something to press. An unnamed control is not seen; its key works all the same.
struct PanelControl {
  std::string name;  // as it is read aloud
  std::function<void()> press;
  KeyEquivalent key = KeyEquivalent::none;
};

// What a panel shows. The host finds a view for it by its type.
class PanelContent {
 public:
  virtual ~PanelContent() = default;
  // What can be read in it now, from top to bottom.
  virtual std::vector<std::string> texts() const = 0;
  virtual std::vector<PanelControl> controls() const { return {}; }
  // False while keys may still arrive that the user meant for another window; they are dropped.
  virtual bool acceptsKeys() const { return true; }
};

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
  virtual std::unique_ptr<Panel> make(PanelDescription description, PanelContent& content) = 0;
};

}  // namespace quillo
