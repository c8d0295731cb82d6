// The screens, as Qt and the window manager know them.
#pragma once

#include <QRect>
#include <memory>

#include "hosts/linux/x11/connection/x11_connection.h"
#include "platform/screens.h"

class QScreen;

namespace quillo::linux_host {

// Between the port's plane, whose y grows upwards from the bottom left of the primary screen, and
// Qt's, whose y grows downwards.
Rect toPlane(const QRect& rectangle);
QRect fromPlane(const Rect& rectangle);

// Made after QGuiApplication.
class QtScreens final : public Screens {
 public:
  std::vector<Screen> screens() const override;
  // The one with most of the active window, or else the one with the pointer.
  std::optional<Screen> mainScreen() const override;

 private:
  Screen screenOf(const QScreen& screen) const;
  QRect visibleGeometry(const QScreen& screen) const;
  QScreen* screenOfActiveWindow() const;
  // None on displays other than X11.
  X11Connection* connection() const;

  // Made when it is first needed.
  mutable std::unique_ptr<X11Connection> connection_;
};

}  // namespace quillo::linux_host
