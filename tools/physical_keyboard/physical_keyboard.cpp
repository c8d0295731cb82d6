#include "physical_keyboard.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo {
namespace {

using linux_host::owned;
using linux_host::X11Connection;

// X keyboards pass Fn on, if at all, under this code.
constexpr xcb_keycode_t functionKeycode = 151;

}  // namespace

std::uint8_t physicalDevice(X11Connection& connection, std::uint16_t type) {
  owned(xcb_input_xi_query_version_reply(
      connection.get(), xcb_input_xi_query_version(connection.get(), 2, 2), nullptr));
  const auto devices = owned(xcb_input_xi_query_device_reply(
      connection.get(), xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL),
      nullptr));
  if (!devices) return 0;
  for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
       xcb_input_xi_device_info_next(&device)) {
    const std::string name(xcb_input_xi_device_info_name(device.data), device.data->name_len);
    if (device.data->type == type && name.find("XTEST") == std::string::npos) {
      return static_cast<std::uint8_t>(device.data->deviceid);
    }
  }
  return 0;
}

PhysicalKeyboard::PhysicalKeyboard(X11Connection& connection)
    : connection_(connection),
      device_(physicalDevice(connection, XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)) {
  if (device_ == 0) throw std::runtime_error("the server has no keyboard");
  firstEvent_ = connection.extension(&xcb_input_id)->first_event;
}

PhysicalKeyboard::~PhysicalKeyboard() {
  for (const xcb_keycode_t keycode : std::exchange(down_, {})) send(keycode, KeyDirection::up);
  const auto pointer = owned(xcb_query_pointer_reply(
      connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
  if (!pointer || (pointer->mask & XCB_MOD_MASK_LOCK) == 0) return;
  const xcb_keycode_t capsLock = linux_host::keycodeAtPosition(codeOf(Key::capsLock)).value();
  send(capsLock, KeyDirection::down);
  send(capsLock, KeyDirection::up);
}

void PhysicalKeyboard::change(Key key, KeyDirection direction) {
  const auto keycode =
      key == Key::function ? functionKeycode : linux_host::keycodeAtPosition(codeOf(key)).value();
  if (direction == KeyDirection::down) {
    down_.insert(keycode);
  } else {
    down_.erase(keycode);
  }
  if (!send(keycode, direction)) throw std::runtime_error("the server refused a key");
}

bool PhysicalKeyboard::send(xcb_keycode_t keycode, KeyDirection direction) {
  const int type =
      direction == KeyDirection::down ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE;
  return connection_.succeeded(
      xcb_test_fake_input_checked(connection_.get(), static_cast<std::uint8_t>(firstEvent_ + type),
                                  keycode, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, device_));
}

}  // namespace quillo
