#include "contracts/linux/linux_window_below.h"

#include <gtest/gtest.h>
#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <array>
#include <cstring>

#include "contracts/linux/linux_x11_host.h"

namespace quillo::contracts {

using linux_host::owned;
using linux_host::X11Connection;

WindowBelow::WindowBelow() : window_(xcb_generate_id(connection_->get())) {
  const QSize screen = QGuiApplication::primaryScreen()->size();
  const std::uint32_t events = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_KEY_PRESS;
  xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, window_, connection_->root(), 0, 0,
                    static_cast<std::uint16_t>(screen.width()),
                    static_cast<std::uint16_t>(screen.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  // Without a frame (Motif's hints: the flag for decorations, and none of them).
  const std::uint32_t frameless[] = {2, 0, 0, 0, 0};
  const xcb_atom_t hints = connection_->atom("_MOTIF_WM_HINTS");
  xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, window_, hints, hints, 32, 5,
                      frameless);
  xcb_map_window(connection_->get(), window_);
  connection_->flush();
  EXPECT_TRUE(lookUntil([this] { return hasFocus(); }))
      << "the other program did not come to the front";
}

bool WindowBelow::hasFocus() {
  return focusedWindow(*connection_) == window_;
}

void WindowBelow::countEvents() {
  while (const auto event = owned(xcb_poll_for_event(connection_->get()))) {
    if ((event->response_type & 0x7f) == XCB_BUTTON_PRESS) ++clicks_;
    if ((event->response_type & 0x7f) == XCB_KEY_PRESS) ++keys_;
  }
}

int WindowBelow::clicks() {
  countEvents();
  return clicks_;
}

int WindowBelow::keys() {
  countEvents();
  return keys_;
}

void WindowBelow::moveTo(const QRect& place) {
  const std::uint32_t values[] = {
      static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y()),
      static_cast<std::uint32_t>(place.width()), static_cast<std::uint32_t>(place.height())};
  xcb_configure_window(connection_->get(), window_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       values);
  connection_->flush();
  EXPECT_TRUE(lookUntil([&] { return this->place() == place; }));
}

QRect WindowBelow::place() {
  const auto size = owned(xcb_get_geometry_reply(
      connection_->get(), xcb_get_geometry(connection_->get(), window_), nullptr));
  const auto corner = owned(xcb_translate_coordinates_reply(
      connection_->get(),
      xcb_translate_coordinates(connection_->get(), window_, connection_->root(), 0, 0), nullptr));
  if (!size || !corner) return {};
  return {corner->dst_x, corner->dst_y, size->width, size->height};
}

void WindowBelow::setFullScreen() {
  constexpr std::uint32_t add = 1;
  tellWindowManager(*connection_, window_, "_NET_WM_STATE", add,
                    connection_->atom("_NET_WM_STATE_FULLSCREEN"));
}

void WindowBelow::comeToFront() {
  constexpr std::uint32_t asPager = 2;
  tellWindowManager(*connection_, window_, "_NET_ACTIVE_WINDOW", asPager);
}

void WindowBelow::switchToWorkspace(std::uint32_t number) {
  tellWindowManager(*connection_, connection_->root(), "_NET_CURRENT_DESKTOP", number);
}

TwoScreens::TwoScreens(X11Connection& connection) : connection_(connection) {
  const auto resources = owned(xcb_randr_get_screen_resources_current_reply(
      connection.get(), xcb_randr_get_screen_resources_current(connection.get(), connection.root()),
      nullptr));
  const xcb_randr_output_t* const outputs =
      xcb_randr_get_screen_resources_current_outputs(resources.get());
  const QRect whole = QGuiApplication::primaryScreen()->geometry();
  const int half = whole.width() / 2;
  add("left", {0, 0, half, whole.height()}, {outputs, outputs + resources->num_outputs});
  add("right", {half, 0, half, whole.height()}, {});
}

TwoScreens::~TwoScreens() {
  for (const xcb_atom_t name : names_)
    xcb_randr_delete_monitor(connection_.get(), connection_.root(), name);
  connection_.flush();
}

// Written out, since the library's own function for it breaks the connection (libxcb 1.15).
void TwoScreens::add(std::string_view name, const QRect& place,
                     const std::vector<std::uint32_t>& outputs) {
  xcb_randr_monitor_info_t monitor{};
  monitor.name = names_.emplace_back(connection_.atom(name));
  monitor.primary = place.x() == 0;
  monitor.nOutput = static_cast<std::uint16_t>(outputs.size());
  monitor.x = static_cast<std::int16_t>(place.x());
  monitor.y = static_cast<std::int16_t>(place.y());
  monitor.width = static_cast<std::uint16_t>(place.width());
  monitor.height = static_cast<std::uint16_t>(place.height());
  monitor.width_in_millimeters = monitor.height_in_millimeters = 300;

  std::vector<std::uint32_t> words(2 + sizeof monitor / sizeof(std::uint32_t));
  words[1] = connection_.root();  // the head before it is the library's
  std::memcpy(&words[2], &monitor, sizeof monitor);
  words.insert(words.end(), outputs.begin(), outputs.end());
  // The library asks for two parts of room before the first.
  std::array<iovec, 4> parts{};
  parts[2] = {words.data(), words.size() * sizeof(std::uint32_t)};
  const xcb_protocol_request_t request{1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
  const xcb_void_cookie_t sent{
      xcb_send_request(connection_.get(), XCB_REQUEST_CHECKED, &parts[2], &request)};
  EXPECT_TRUE(connection_.succeeded(sent));
}

void clickAt(X11Connection& connection, QPoint place) {
  const auto send = [&](std::uint8_t type, std::uint8_t detail) {
    xcb_test_fake_input(connection.get(), type, detail, XCB_CURRENT_TIME, connection.root(),
                        static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                        0);
  };
  send(XCB_MOTION_NOTIFY, 0);
  send(XCB_BUTTON_PRESS, 1);
  send(XCB_BUTTON_RELEASE, 1);
  connection.flush();
}

}  // namespace quillo::contracts
