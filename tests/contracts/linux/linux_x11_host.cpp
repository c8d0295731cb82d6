#include "contracts/linux/linux_x11_host.h"

#include <QCoreApplication>
#include <thread>

#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo::contracts {
namespace {

using linux_host::owned;
using linux_host::X11Connection;

const char* argumentOf(OtherApplication::Kind kind) {
  switch (kind) {
    case OtherApplication::Kind::editor:
      return "editor";
    case OtherApplication::Kind::terminal:
      return "terminal";
    case OtherApplication::Kind::oldTerminal:
      return "old-terminal";
  }
  return "";
}

}  // namespace

bool lookUntil(const std::function<bool()>& holds) {
  const MonotonicTime end = linux_host::monotonicNow() + std::chrono::seconds(10);
  while (!holds()) {
    if (linux_host::monotonicNow() > end) return false;
    std::this_thread::yield();
  }
  return true;
}

std::optional<xcb_window_t> focusedWindow(X11Connection& connection) {
  const auto focus = owned(
      xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
  const auto active = connection.word(connection.root(), "_NET_ACTIVE_WINDOW");
  return focus && active == focus->focus ? active : std::nullopt;
}

void tellWindowManager(X11Connection& connection, xcb_window_t window, std::string_view message,
                       std::uint32_t first, std::uint32_t second) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = connection.atom(message);
  event.data.data32[0] = first;
  event.data.data32[1] = second;
  xcb_send_event(connection.get(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  connection.flush();
}

void awaitWindowManager(X11Connection& connection) {
  const xcb_window_t window = xcb_generate_id(connection.get());
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  tellWindowManager(connection, window, "_NET_REQUEST_FRAME_EXTENTS", 0);
  EXPECT_TRUE(lookUntil([&] { return connection.word(window, "_NET_FRAME_EXTENTS").has_value(); }));
  xcb_destroy_window(connection.get(), window);
}

OtherApplication::OtherApplication(X11Connection& connection, const std::string& name, Kind kind)
    : connection_(connection) {
  process_.setProcessChannelMode(QProcess::ForwardedChannels);
  process_.start(QCoreApplication::applicationDirPath() + "/desktop_application",
                 {QString::fromStdString(name), argumentOf(kind)});
  EXPECT_TRUE(process_.waitForStarted());
  EXPECT_TRUE(lookUntil([this] { return isInFront(); })) << name << " did not come to the front";
}

OtherApplication::~OtherApplication() {
  quit();
}

void OtherApplication::quit() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.terminate();
  process_.waitForFinished();
}

bool OtherApplication::isInFront() {
  const auto focused = focusedWindow(connection_);
  if (!focused || connection_.word(*focused, "_NET_WM_PID") != process_.processId()) return false;
  window_ = *focused;
  return true;
}

void OtherApplication::focus() {
  tellWindowManager(connection_, window_, "_NET_ACTIVE_WINDOW", 2);
  EXPECT_TRUE(lookUntil([this] { return isInFront(); }));
}

std::string OtherApplication::text() {
  return connection_.text(window_, "EDITOR_TEXT").value_or("");
}

void OtherApplication::command(std::string_view command) {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_,
                      connection_.atom("EDITOR_COMMAND"), XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(command.size()), command.data());
  connection_.flush();
}

std::shared_ptr<void> grabElsewhere(X11Connection& connection, Key key, std::uint32_t modifiers) {
  std::uint16_t mask = 0;
  if ((modifiers & hot_key_modifiers::control) != 0) mask |= XCB_MOD_MASK_CONTROL;
  if ((modifiers & hot_key_modifiers::shift) != 0) mask |= XCB_MOD_MASK_SHIFT;
  if ((modifiers & hot_key_modifiers::option) != 0) mask |= XCB_MOD_MASK_1;
  if ((modifiers & hot_key_modifiers::command) != 0) mask |= XCB_MOD_MASK_4;
  const xcb_keycode_t keycode = linux_host::keycodeAtPosition(codeOf(key)).value();
  if (!connection.succeeded(xcb_grab_key_checked(connection.get(), 0, connection.root(), mask,
                                                 keycode, XCB_GRAB_MODE_ASYNC,
                                                 XCB_GRAB_MODE_ASYNC))) {
    return nullptr;
  }
  return {&connection, [keycode, mask](X11Connection* other) {
            EXPECT_TRUE(other->succeeded(
                xcb_ungrab_key_checked(other->get(), keycode, other->root(), mask)));
          }};
}

}  // namespace quillo::contracts
