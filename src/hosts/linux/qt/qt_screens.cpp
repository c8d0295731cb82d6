#include "hosts/linux/qt/qt_screens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "hosts/linux/x11/windows/x11_reserved_places.h"

namespace quillo::linux_host {
namespace {

QRect primaryGeometry() {
  const QScreen* const primary = QGuiApplication::primaryScreen();
  return primary ? primary->geometry() : QRect();
}

// In the server's pixels, like the windows of other programs.
QRect nativeGeometry(const QScreen& screen) {
  return {screen.geometry().topLeft(), screen.size() * screen.devicePixelRatio()};
}

int area(const QRect& rectangle) {
  return rectangle.isEmpty() ? 0 : rectangle.width() * rectangle.height();
}

std::optional<QRect> geometryOf(X11Connection& connection, xcb_window_t window) {
  const auto geometry = owned(xcb_get_geometry_reply(
      connection.get(), xcb_get_geometry(connection.get(), window), nullptr));
  const auto corner = owned(xcb_translate_coordinates_reply(
      connection.get(),
      xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0), nullptr));
  if (!geometry || !corner) return std::nullopt;
  return QRect(corner->dst_x, corner->dst_y, geometry->width, geometry->height);
}

}  // namespace

Rect toPlane(const QRect& rectangle) {
  const QRect primary = primaryGeometry();
  const int bottom = primary.y() + primary.height() - (rectangle.y() + rectangle.height());
  return {{static_cast<double>(rectangle.x() - primary.x()), static_cast<double>(bottom)},
          {static_cast<double>(rectangle.width()), static_cast<double>(rectangle.height())}};
}

QRect fromPlane(const Rect& rectangle) {
  const QRect primary = primaryGeometry();
  const auto round = [](double value) { return static_cast<int>(std::lround(value)); };
  return {primary.x() + round(rectangle.minX()),
          primary.y() + primary.height() - round(rectangle.maxY()), round(rectangle.size.width),
          round(rectangle.size.height)};
}

Screen QtScreens::screenOf(const QScreen& screen) const {
  return {toPlane(screen.geometry()), toPlane(visibleGeometry(screen))};
}

// Where there are several, Qt knows nothing of the bars.
QRect QtScreens::visibleGeometry(const QScreen& screen) const {
  X11Connection* const x11 = QGuiApplication::screens().size() > 1 ? connection() : nullptr;
  if (!x11) return screen.availableGeometry();
  const QRect native = nativeGeometry(screen);
  const QRect rest = withoutBars(*x11, native);
  const auto logical = [&](int pixels) {
    return static_cast<int>(std::ceil(pixels / screen.devicePixelRatio()));
  };
  return screen.geometry().adjusted(
      logical(rest.left() - native.left()), logical(rest.top() - native.top()),
      -logical(native.right() - rest.right()), -logical(native.bottom() - rest.bottom()));
}

std::vector<Screen> QtScreens::screens() const {
  std::vector<Screen> screens;
  for (const QScreen* const screen : QGuiApplication::screens()) {
    const auto place = screen == QGuiApplication::primaryScreen() ? screens.begin() : screens.end();
    screens.insert(place, screenOf(*screen));
  }
  return screens;
}

std::optional<Screen> QtScreens::mainScreen() const {
  const QScreen* screen = screenOfActiveWindow();
  if (!screen) screen = QGuiApplication::screenAt(QCursor::pos());
  return screen ? std::optional(screenOf(*screen)) : std::nullopt;
}

X11Connection* QtScreens::connection() const {
  if (QGuiApplication::platformName() != "xcb") return nullptr;
  if (!connection_) connection_ = X11Connection::open();
  return connection_.get();
}

QScreen* QtScreens::screenOfActiveWindow() const {
  X11Connection* const x11 = connection();
  if (!x11) return nullptr;
  const auto active = x11->word(x11->root(), "_NET_ACTIVE_WINDOW");
  if (!active || *active == XCB_WINDOW_NONE) return nullptr;
  const auto window = geometryOf(*x11, *active);
  if (!window) return nullptr;
  const auto shared = [&](const QScreen* screen) {
    return area(nativeGeometry(*screen).intersected(*window));
  };
  const QList<QScreen*> screens = QGuiApplication::screens();
  const auto most = std::ranges::max_element(screens, {}, shared);
  return most != screens.end() && shared(*most) > 0 ? *most : nullptr;
}

}  // namespace quillo::linux_host
