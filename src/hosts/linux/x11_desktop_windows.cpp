#include "hosts/linux/x11_desktop_windows.h"

#include <xcb/screensaver.h>

#include <chrono>

namespace quillo::linux_host {
namespace {

constexpr Duration lifeOfSight = std::chrono::milliseconds(3);
constexpr int deepestWindow = 16;

}  // namespace

bool X11DesktopWindows::isConnected() {
  if (connection_) return !connection_->isBroken();
  connection_ = X11Connection::open();
  if (!connection_) return false;
  windows_ = std::make_unique<X11Windows>(*connection_, entries_);
  tellsIdleTime_ = connection_->extension(&xcb_screensaver_id) != nullptr;
  return true;
}

// The questions about the window that was in front go out before it is known whether it still is.
const X11DesktopWindows::Sight& X11DesktopWindows::look() {
  const MonotonicTime now = mainThread_.now();
  if (now - sight_.seenAt < lifeOfSight) return sight_;
  Sight seen{{}, now, now};
  if (!isConnected()) return sight_ = seen;
  xcb_connection_t* const connection = connection_->get();
  const auto last = static_cast<xcb_window_t>(sight_.front ? sight_.front->identifier : 0);
  xcb_screensaver_query_info_cookie_t idle{};
  xcb_translate_coordinates_cookie_t origin{};
  if (tellsIdleTime_) idle = xcb_screensaver_query_info(connection, connection_->root());
  if (last != 0) origin = xcb_translate_coordinates(connection, last, connection_->root(), 0, 0);
  const auto active = connection_->word(connection_->root(), "_NET_ACTIVE_WINDOW");
  if (tellsIdleTime_) {
    const auto reply = owned(xcb_screensaver_query_info_reply(connection, idle, nullptr));
    if (reply) {
      seen.lastInput =
          now + (Duration::zero() - std::chrono::milliseconds(reply->ms_since_user_input));
    }
  }
  const auto place =
      last != 0 ? owned(xcb_translate_coordinates_reply(connection, origin, nullptr)) : nullptr;
  if (place && active == last) {
    // Numbers of windows are used again, by other programs too.
    seen.front = DesktopWindow{last, windows_->processOf(last), place->dst_x, place->dst_y};
  } else if (const auto window = windows_->active()) {
    seen.front = describe(*window);
  }
  // A window that moves takes everything in it along.
  if (seen.front != sight_.front) seen.lastInput = now;
  return sight_ = seen;
}

std::optional<DesktopWindow> X11DesktopWindows::describe(xcb_window_t window) {
  const auto place = owned(xcb_translate_coordinates_reply(
      connection_->get(),
      xcb_translate_coordinates(connection_->get(), window, connection_->root(), 0, 0), nullptr));
  if (!place) return std::nullopt;
  return DesktopWindow{window, windows_->processOf(window), place->dst_x, place->dst_y};
}

std::optional<DesktopWindow> X11DesktopWindows::front() {
  return look().front;
}

Duration X11DesktopWindows::sinceLastInput() {
  const Sight& sight = look();
  return mainThread_.now() - sight.lastInput;
}

// The window manager's frames have no state; the programs' windows in them have.
std::optional<DesktopWindow> X11DesktopWindows::at(std::int32_t x, std::int32_t y) {
  if (!isConnected()) return std::nullopt;
  xcb_window_t window = connection_->root();
  std::optional<xcb_window_t> topmost;
  for (int depth = 0; depth < deepestWindow; ++depth) {
    const auto reply = owned(xcb_translate_coordinates_reply(
        connection_->get(),
        xcb_translate_coordinates(connection_->get(), connection_->root(), window,
                                  static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)),
        nullptr));
    if (!reply || reply->child == XCB_WINDOW_NONE) break;
    window = reply->child;
    if (!topmost) topmost = window;
    if (connection_->word(window, "WM_STATE")) {
      topmost = window;
      break;
    }
  }
  return topmost ? describe(*topmost) : std::nullopt;
}

std::string X11DesktopWindows::title(const DesktopWindow& window) {
  if (!isConnected()) return {};
  const auto identifier = static_cast<xcb_window_t>(window.identifier);
  if (auto title = connection_->text(identifier, "_NET_WM_NAME")) return *title;
  return connection_->text(identifier, "WM_NAME").value_or("");
}

}  // namespace quillo::linux_host
