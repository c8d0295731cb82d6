#include "physical_pointer.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <stdexcept>
#include <utility>

#include "physical_keyboard.h"

namespace quillo {

using linux_host::X11Connection;

PhysicalPointer::PhysicalPointer(X11Connection& connection)
    : connection_(connection),
      device_(physicalDevice(connection, XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER)) {
  if (device_ == 0) throw std::runtime_error("the server has no mouse");
  firstEvent_ = connection.extension(&xcb_input_id)->first_event;
}

PhysicalPointer::~PhysicalPointer() {
  for (const std::uint8_t button : std::exchange(down_, {}))
    send(button, XCB_INPUT_DEVICE_BUTTON_RELEASE);
}

// A device's place cannot be told through this library; where the pointer is says nothing of who
// moved it.
void PhysicalPointer::moveTo(int x, int y) {
  if (!connection_.succeeded(xcb_test_fake_input_checked(
          connection_.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, connection_.root(),
          static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0)))
    throw std::runtime_error("the server refused to move the pointer");
}

void PhysicalPointer::press(std::uint8_t button) {
  down_.insert(button);
  if (!send(button, XCB_INPUT_DEVICE_BUTTON_PRESS))
    throw std::runtime_error("the server refused a button");
}

void PhysicalPointer::release(std::uint8_t button) {
  down_.erase(button);
  if (!send(button, XCB_INPUT_DEVICE_BUTTON_RELEASE))
    throw std::runtime_error("the server refused a button");
}

// A server without a screen has a mouse without a wheel: the turn is then a synthetic one.
bool PhysicalPointer::send(std::uint8_t button, int type) {
  if (button >= wheelDown) {
    const std::uint8_t core =
        type == XCB_INPUT_DEVICE_BUTTON_PRESS ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE;
    return connection_.succeeded(xcb_test_fake_input_checked(
        connection_.get(), core, button, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0));
  }
  return connection_.succeeded(
      xcb_test_fake_input_checked(connection_.get(), static_cast<std::uint8_t>(firstEvent_ + type),
                                  button, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, device_));
}

}  // namespace quillo
