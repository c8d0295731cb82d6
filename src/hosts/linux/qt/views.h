// What the root hands to this host, so that its windows show something.
#pragma once

#include <QIcon>
#include <QMargins>
#include <QRegion>
#include <QSizeF>
#include <QString>
#include <QWindow>
#include <functional>
#include <memory>
#include <string>

#include "base/words.h"
#include "platform/content.h"

namespace quillo::linux_host {

// Whether what lies below a panel can shine through.
enum class Ground { opaque, translucent };

// The window of one panel, and what is drawn in it. The panel alone shows, hides and moves it.
// Main thread.
class PanelView {
 public:
  virtual ~PanelView() = default;

  virtual QWindow& window() = 0;
  virtual QSizeF fittingSize() = 0;
  // Room in the window for a shadow around what the panel covers.
  virtual QMargins margins() const = 0;
  // The part of the window that the panel itself is drawn on.
  virtual QRegion shape() const = 0;
  virtual void setShapeChanged(std::function<void()> changed) = 0;
  // May change the margins.
  virtual void setGround(Ground ground) = 0;
  // Gives the keyboard focus inside the window back to its start.
  virtual void takeFocus() = 0;
};

// The window of one main window, and what is drawn in it. Main thread.
class WindowView {
 public:
  virtual ~WindowView() = default;

  virtual QWindow& window() = 0;
  // In place of what was shown before. `content` outlives the view, or the next one.
  virtual void setContent(Content& content) = 0;
  // Above the content; null ends it.
  virtual void setSheet(Content* sheet) = 0;
};

// Main thread. Costs nothing until the first view is made.
class Views {
 public:
  virtual ~Views() = default;
  // `content` outlives the view. A view presses a control in a turn of its own, since that may
  // take the panel away.
  virtual std::unique_ptr<PanelView> makePanelView(Content& content) = 0;
  virtual std::unique_ptr<WindowView> makeWindowView() = 0;
  // The symbol as a picture that stands out on light and dark bars.
  virtual QIcon barIcon(const std::string& symbol) = 0;
  // In the user's language.
  virtual QString text(const Words& words) const = 0;
};

}  // namespace quillo::linux_host
