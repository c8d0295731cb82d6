#include "hosts/linux/x11/windows/x11_front_window.h"

namespace quillo::linux_host {
namespace {

// A window can go between the question which one is active and the questions about it.
constexpr int attempts = 3;

}  // namespace

X11FrontWindow::X11FrontWindow(MainThread& mainThread, X11Connection& connection,
                               X11EventSource& events, X11Windows& windows)
    : mainThread_(mainThread),
      connection_(connection),
      events_(events),
      windows_(windows),
      activeWindow_(connection.atom("_NET_ACTIVE_WINDOW")),
      windowManagerCheck_(connection.atom("_NET_SUPPORTING_WM_CHECK")),
      toolkitIdentifier_(connection.atom("_GTK_APPLICATION_ID")),
      subscription_(events.observe([this](const xcb_generic_event_t& event) { handle(event); })) {
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &mask);
  connection.flush();
}

std::optional<xcb_window_t> X11FrontWindow::window() {
  events_.takeArrived();
  return isCurrent_ ? std::optional(window_) : look();
}

const WindowApplication* X11FrontWindow::application() {
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const auto front = window();
    if (!front) return nullptr;
    if (!application_) application_ = windows_.application(*front);
    if (application_) return &*application_;
    forget();
  }
  return nullptr;
}

std::optional<X11FrontWindow::Place> X11FrontWindow::place() {
  const auto front = window();
  if (!front || place_) return front ? place_ : std::nullopt;
  const auto reply = owned(xcb_translate_coordinates_reply(
      connection_.get(),
      xcb_translate_coordinates(connection_.get(), *front, connection_.root(), 0, 0), nullptr));
  if (reply) place_ = Place{reply->dst_x, reply->dst_y};
  return place_;
}

// Watches before it asks, so that no change falls between the answer and the watch.
std::optional<xcb_window_t> X11FrontWindow::look() {
  const auto manager = windows_.windowManager();
  watch(manager_, manager.value_or(XCB_WINDOW_NONE), XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  const auto active = windows_.active();
  const xcb_window_t before = window_;
  watch(window_, active.value_or(XCB_WINDOW_NONE),
        manager ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY
                : XCB_EVENT_MASK_NO_EVENT);
  forget();
  if (window_ != before) changedAt_ = mainThread_.now();
  // Window managers call no window active for a moment while they switch.
  isCurrent_ = active && manager && windows_.windowManager() == manager;
  return active;
}

// Also the one that is watched already: another one may have its number by now.
void X11FrontWindow::watch(xcb_window_t& watched, xcb_window_t window, std::uint32_t events) {
  const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
  if (watched != XCB_WINDOW_NONE && watched != window) {
    xcb_change_window_attributes(connection_.get(), watched, XCB_CW_EVENT_MASK, &none);
  }
  if (window != XCB_WINDOW_NONE) {
    xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &events);
  }
  watched = window;
}

void X11FrontWindow::forget() {
  isCurrent_ = false;
  application_.reset();
  place_.reset();
}

void X11FrontWindow::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      return propertyChanged(changed.window, changed.atom);
    }
    case XCB_CONFIGURE_NOTIFY:
      return structureChanged(reinterpret_cast<const xcb_configure_notify_event_t&>(event).window,
                              false);
    case XCB_REPARENT_NOTIFY:
      return structureChanged(reinterpret_cast<const xcb_reparent_notify_event_t&>(event).window,
                              false);
    case XCB_DESTROY_NOTIFY:
      return structureChanged(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window,
                              true);
    default:
      return;
  }
}

void X11FrontWindow::propertyChanged(xcb_window_t window, xcb_atom_t name) {
  if (window == connection_.root()) {
    if (name == activeWindow_ || name == windowManagerCheck_) forget();
  } else if (window == window_) {
    if (name == XCB_ATOM_WM_CLASS || name == toolkitIdentifier_) application_.reset();
  }
}

// The number of a window that has gone is used again, by other programs too.
void X11FrontWindow::structureChanged(xcb_window_t window, bool isGone) {
  if (window != window_ && window != manager_) return;
  place_.reset();
  changedAt_ = mainThread_.now();
  if (!isGone) return;
  (window == window_ ? window_ : manager_) = XCB_WINDOW_NONE;
  forget();
}

}  // namespace quillo::linux_host
