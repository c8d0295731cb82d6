#include "hosts/linux/x11/windows/x11_panel_window.h"

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <string_view>
#include <vector>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {
namespace {

constexpr std::uint32_t allWorkspaces = 0xffffffff;

xcb_connection_t* connection() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

xcb_window_t idOf(QWindow& window) {
  return static_cast<xcb_window_t>(window.winId());
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto reply = owned(xcb_intern_atom_reply(
      connection,
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply ? reply->atom : XCB_ATOM_NONE;
}

// In the server's pixels.
std::vector<QRect> nativeRectangles(const QWindow& window, const QRegion& region) {
  const double scale = window.devicePixelRatio();
  std::vector<QRect> rectangles;
  for (const QRect& part : region)
    rectangles.push_back(
        QRectF(part.x() * scale, part.y() * scale, part.width() * scale, part.height() * scale)
            .toAlignedRect());
  return rectangles;
}

void setProperty(xcb_connection_t* connection, QWindow& window, std::string_view name,
                 const std::vector<std::uint32_t>& words) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, idOf(window), atom(connection, name),
                      XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(words.size()),
                      words.data());
}

}  // namespace

void setInputRegion(QWindow& window, const QRegion& region) {
  xcb_connection_t* const x11 = connection();
  if (!x11) return;
  std::vector<xcb_rectangle_t> rectangles;
  for (const QRect& part : nativeRectangles(window, region))
    rectangles.push_back({static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
                          static_cast<std::uint16_t>(part.width()),
                          static_cast<std::uint16_t>(part.height())});
  xcb_shape_rectangles(x11, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                       idOf(window), 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                       rectangles.data());
  xcb_flush(x11);
}

void joinAllWorkspaces(QWindow& window) {
  xcb_connection_t* const x11 = connection();
  if (!x11) return;
  constexpr std::string_view desktop = "_NET_WM_DESKTOP";
  setProperty(x11, window, desktop, {allWorkspaces});
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = idOf(window);
  message.type = atom(x11, desktop);
  message.data.data32[0] = allWorkspaces;
  xcb_send_event(x11, 0, xcb_setup_roots_iterator(xcb_get_setup(x11)).data->root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(x11);
}

void blurBehind(QWindow& window, const QRegion& region) {
  xcb_connection_t* const x11 = connection();
  if (!x11) return;
  std::vector<std::uint32_t> words;
  for (const QRect& part : nativeRectangles(window, region))
    for (const int value : {part.x(), part.y(), part.width(), part.height()})
      words.push_back(static_cast<std::uint32_t>(value));
  setProperty(x11, window, "_KDE_NET_WM_BLUR_BEHIND_REGION", words);
}

}  // namespace quillo::linux_host
