#include "hosts/linux/x11/keys/x11_keyboard.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillo::linux_host {
namespace {

// An event of our own that has not come back by then was swallowed by the server, which ignores
// the press of a key that is down already.
constexpr Duration longestEcho = std::chrono::seconds(1);

// Where XInput 2.0 is asked for, raw events are lost while any program holds a grab.
constexpr std::uint16_t inputMajorVersion = 2;
constexpr std::uint16_t inputMinorVersion = 2;
constexpr std::uint16_t leastInputMinorVersion = 1;

std::bitset<256> downKeys(const xcb_query_keymap_reply_t* reply) {
  std::bitset<256> down;
  if (reply == nullptr) return down;
  for (std::size_t keycode = 0; keycode < down.size(); ++keycode) {
    down[keycode] = (reply->keys[keycode / 8] >> (keycode % 8) & 1) != 0;
  }
  return down;
}

struct SelectedEvents {
  xcb_input_event_mask_t header;
  std::uint32_t mask;
};

}  // namespace

std::unique_ptr<X11Keyboard> X11Keyboard::open(MainThread& mainThread, X11Connection& connection,
                                               X11EventSource& events) {
  auto keymap = X11Keymap::open(connection);
  if (!keymap || connection.extension(&xcb_test_id) == nullptr) return nullptr;
  auto keyboard = std::unique_ptr<X11Keyboard>(
      new X11Keyboard(mainThread, connection, events, std::move(keymap)));
  return keyboard->selectInput() ? std::move(keyboard) : nullptr;
}

X11Keyboard::X11Keyboard(MainThread& mainThread, X11Connection& connection, X11EventSource& events,
                         std::unique_ptr<X11Keymap> keymap)
    : mainThread_(mainThread),
      connection_(connection),
      events_(events),
      keymap_(std::move(keymap)),
      subscription_(events.observe([this](const xcb_generic_event_t& event) { handle(event); })) {}

bool X11Keyboard::selectInput() {
  const auto* extension = connection_.extension(&xcb_input_id);
  if (extension == nullptr) return false;
  inputOpcode_ = extension->major_opcode;
  const auto version = owned(xcb_input_xi_query_version_reply(
      connection_.get(),
      xcb_input_xi_query_version(connection_.get(), inputMajorVersion, inputMinorVersion),
      nullptr));
  if (!version || version->major_version != inputMajorVersion ||
      version->minor_version < leastInputMinorVersion) {
    return false;
  }
  const SelectedEvents selected[] = {
      {{XCB_INPUT_DEVICE_ALL_MASTER, 1},
       XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE},
      {{XCB_INPUT_DEVICE_ALL, 1}, XCB_INPUT_XI_EVENT_MASK_HIERARCHY},
  };
  xcb_input_xi_select_events(connection_.get(), connection_.root(), std::size(selected),
                             &selected[0].header);
  findSyntheticDevices();
  down_ = readDownKeys();
  connection_.flush();
  return !connection_.isBroken();
}

void X11Keyboard::findSyntheticDevices() {
  syntheticDevices_.clear();
  const auto devices = owned(xcb_input_xi_query_device_reply(
      connection_.get(), xcb_input_xi_query_device(connection_.get(), XCB_INPUT_DEVICE_ALL),
      nullptr));
  if (!devices) return;
  for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
       xcb_input_xi_device_info_next(&device)) {
    if (device.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD &&
        isSyntheticDevice(device.data->deviceid)) {
      syntheticDevices_.insert(device.data->deviceid);
    }
  }
}

bool X11Keyboard::isSyntheticDevice(std::uint16_t device) const {
  const auto property = owned(xcb_input_xi_get_property_reply(
      connection_.get(),
      xcb_input_xi_get_property(connection_.get(), device, 0, connection_.atom("XTEST Device"),
                                XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
      nullptr));
  if (!property || property->format != 8 || property->num_items == 0) return false;
  return *static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(property.get())) != 0;
}

void X11Keyboard::handle(const xcb_generic_event_t& event) {
  if (keymap_->noticesLayoutChange(event)) {
    layoutObservers_.notify();
    return;
  }
  if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return;
  const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
  if (generic.extension != inputOpcode_) return;
  switch (generic.event_type) {
    case XCB_INPUT_RAW_KEY_PRESS:
    case XCB_INPUT_RAW_KEY_RELEASE: {
      const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
      const bool isPress = generic.event_type == XCB_INPUT_RAW_KEY_PRESS;
      keyChanged({static_cast<xcb_keycode_t>(raw.detail),
                  isPress ? KeyDirection::down : KeyDirection::up, raw.time, 0, std::nullopt},
                 raw.sourceid);
      break;
    }
    case XCB_INPUT_HIERARCHY:
      findSyntheticDevices();
      break;
    default:
      break;
  }
}

void X11Keyboard::keyChanged(KeyChange change, std::uint16_t source) {
  if (syntheticDevices_.contains(source)) {
    if (const auto own = takeExpected(change.keycode, change.direction)) {
      if (!own->seenAs) return;
      change.flags = own->seenAs->flags;
      change.posted = own->seenAs;
      keyObservers_.notify(change);
      return;
    }
  }
  down_[change.keycode] = change.direction == KeyDirection::down;
  change.flags = flagsOf(down_) | (keymap_->isCapsLockOn() ? event_flags::capsLock : 0);
  keyObservers_.notify(change);
}

std::optional<X11Keyboard::ExpectedKey> X11Keyboard::takeExpected(xcb_keycode_t keycode,
                                                                  KeyDirection direction) {
  const MonotonicTime now = mainThread_.now();
  std::erase_if(expected_,
                [now](const ExpectedKey& key) { return now - key.posted > longestEcho; });
  const auto found = std::find_if(expected_.begin(), expected_.end(), [&](const ExpectedKey& key) {
    return key.keycode == keycode && key.direction == direction;
  });
  if (found == expected_.end()) return std::nullopt;
  const ExpectedKey own = *found;
  expected_.erase(found);
  return own;
}

std::uint64_t X11Keyboard::flagsOf(const std::bitset<256>& down) {
  std::uint64_t flags = 0;
  for (std::size_t keycode = 0; keycode < down.size(); ++keycode) {
    if (down[keycode]) flags |= keymap_->modifierFlag(static_cast<xcb_keycode_t>(keycode));
  }
  // Caps lock counts while it is on, not while its key is down.
  return flags & ~event_flags::capsLock;
}

std::bitset<256> X11Keyboard::readDownKeys() const {
  return downKeys(
      owned(xcb_query_keymap_reply(connection_.get(), xcb_query_keymap(connection_.get()), nullptr))
          .get());
}

HeldKeys X11Keyboard::heldKeys() {
  const std::bitset<256> down = readDownKeys();
  HeldKeys held;
  for (std::size_t keycode = 0; keycode < down.size(); ++keycode) {
    if (!down[keycode]) continue;
    const auto code = static_cast<xcb_keycode_t>(keycode);
    const bool isModifier = (keymap_->modifierFlag(code) & event_flags::chordMask) != 0;
    (isModifier ? held.modifiers : held.others).push_back(code);
  }
  return held;
}

std::uint64_t X11Keyboard::modifierFlags() {
  const auto askedKeys = xcb_query_keymap(connection_.get());
  const auto askedPointer = xcb_query_pointer(connection_.get(), connection_.root());
  const auto keys = owned(xcb_query_keymap_reply(connection_.get(), askedKeys, nullptr));
  const auto pointer = owned(xcb_query_pointer_reply(connection_.get(), askedPointer, nullptr));
  const bool isCapsLockOn = pointer && (pointer->mask & XCB_MOD_MASK_LOCK) != 0;
  return flagsOf(downKeys(keys.get())) | (isCapsLockOn ? event_flags::capsLock : 0);
}

void X11Keyboard::fake(xcb_keycode_t keycode, KeyDirection direction,
                       std::optional<PostedKey> seenAs) {
  expected_.push_back({keycode, direction, mainThread_.now(), seenAs});
  xcb_test_fake_input(connection_.get(),
                      direction == KeyDirection::down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode,
                      XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

}  // namespace quillo::linux_host
