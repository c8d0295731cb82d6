#include "hosts/linux/x11_desktop_windows.h"

#include <algorithm>

namespace quillo::linux_host {
namespace {

constexpr int deepestWindow = 16;

}  // namespace

std::optional<DesktopWindow> X11DesktopWindows::front() {
  const WindowApplication* const application = front_.application();
  if (application == nullptr) return std::nullopt;
  DesktopWindow front{application->window, application->processIdentifier, 0, 0};
  const auto place = front_.place();
  if (!place) return std::nullopt;
  front.x = place->x;
  front.y = place->y;
  return front;
}

std::optional<DesktopWindow> X11DesktopWindows::describe(xcb_window_t window) {
  const auto place = owned(xcb_translate_coordinates_reply(
      connection_.get(),
      xcb_translate_coordinates(connection_.get(), window, connection_.root(), 0, 0), nullptr));
  if (!place) return std::nullopt;
  return DesktopWindow{window, windows_.processOf(window), place->dst_x, place->dst_y};
}

// A window that moves takes everything in it along.
MonotonicTime X11DesktopWindows::lastInput() {
  return std::max(lastInput_.at(), front_.changedAt());
}

// The window manager's frames have no state; the programs' windows in them have.
std::optional<DesktopWindow> X11DesktopWindows::at(std::int32_t x, std::int32_t y) {
  xcb_window_t window = connection_.root();
  std::optional<xcb_window_t> topmost;
  for (int depth = 0; depth < deepestWindow; ++depth) {
    const auto reply = owned(xcb_translate_coordinates_reply(
        connection_.get(),
        xcb_translate_coordinates(connection_.get(), connection_.root(), window,
                                  static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)),
        nullptr));
    if (!reply || reply->child == XCB_WINDOW_NONE) break;
    window = reply->child;
    if (!topmost) topmost = window;
    if (connection_.word(window, "WM_STATE")) {
      topmost = window;
      break;
    }
  }
  return topmost ? describe(*topmost) : std::nullopt;
}

std::string X11DesktopWindows::title(const DesktopWindow& window) {
  const auto identifier = static_cast<xcb_window_t>(window.identifier);
  if (auto title = connection_.text(identifier, "_NET_WM_NAME")) return *title;
  return connection_.text(identifier, "WM_NAME").value_or("");
}

}  // namespace quillo::linux_host
