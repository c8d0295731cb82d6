#include "hosts/linux/x11/keys/x11_hot_keys.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo::linux_host {
namespace {

// "Invalid parameter" in the numbering that the callers log.
constexpr auto invalidParameter = static_cast<HotKeyError>(-50);

// More keys than go down between an event and its handling.
constexpr std::size_t rememberedPresses = 64;

struct ModifierMask {
  std::uint32_t modifier;
  std::uint16_t ModifierMasks::* mask;
};

constexpr ModifierMask modifierMasks[] = {
    {hot_key_modifiers::command, &ModifierMasks::command},
    {hot_key_modifiers::shift, &ModifierMasks::shift},
    {hot_key_modifiers::option, &ModifierMasks::option},
    {hot_key_modifiers::control, &ModifierMasks::control},
};

// A grab counts for one exact state: the chord is grabbed for every state of the locks.
std::array<std::uint16_t, 4> withLocks(std::uint16_t mask, const ModifierMasks& masks) {
  const auto with = [mask](int locks) { return static_cast<std::uint16_t>(mask | locks); };
  return {with(0), with(masks.capsLock), with(masks.numLock), with(masks.capsLock | masks.numLock)};
}

std::uint16_t chordBits(const ModifierMasks& masks) {
  return static_cast<std::uint16_t>(masks.shift | masks.control | masks.option | masks.command);
}

// Every choice of some bits of `mask`, but not all.
template <class Action>
void forEachPartOf(std::uint16_t mask, const Action& action) {
  for (int part = mask; part != 0;) {
    part = (part - 1) & mask;
    action(static_cast<std::uint16_t>(part));
  }
}

}  // namespace

X11HotKeys::X11HotKeys(MainThread& mainThread, X11Connection& connection, X11EventSource& events,
                       X11Keyboard& keyboard, Log& log)
    : mainThread_(mainThread),
      connection_(connection),
      keyboard_(keyboard),
      log_(log),
      unmappedWindow_(connection.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)),
      masks_(keyboard.keymap().masks()),
      subscriptions_{events.observe([this](const xcb_generic_event_t& event) { handle(event); }),
                     keyboard.observeKeys([this](const KeyChange& change) { keyChanged(change); }),
                     keyboard.observeLayout([this] { layoutChanged(); })} {}

X11HotKeys::~X11HotKeys() {
  for (const auto& [id, chord] : chords_) ungrab(chord);
  giveKeyboardBack();
}

Result<std::shared_ptr<void>, HotKeyError> X11HotKeys::registerHotKey(
    std::uint32_t keyCode, std::uint32_t modifiers, std::function<void()> pressed) {
  const auto keycode = keycodeAtPosition(keyCode);
  const auto mask = maskOf(modifiers);
  if (!keycode || !mask) return invalidParameter;
  Chord chord{*keycode, modifiers, *mask,
              std::make_shared<std::function<void()>>(std::move(pressed))};
  // The server lets one program grab a chord twice.
  if (isRegistered(chord.keycode, chord.mask)) return HotKeyError::alreadyTaken;
  if (const auto grabbed = grab(chord); !grabbed) return grabbed.error();

  const ChordId id = nextId_++;
  chords_.emplace(id, std::move(chord));
  std::shared_ptr<void> token(this, [id, hotKeys = std::weak_ptr<void>(alive_)](X11HotKeys* owner) {
    if (!hotKeys.expired()) owner->unregister(id);
  });
  return token;
}

std::optional<std::uint16_t> X11HotKeys::maskOf(std::uint32_t modifiers) const {
  std::uint16_t result = 0;
  for (const ModifierMask& entry : modifierMasks) {
    if ((modifiers & entry.modifier) == 0) continue;
    if (masks_.*entry.mask == 0) return std::nullopt;
    result |= masks_.*entry.mask;
  }
  return result;
}

bool X11HotKeys::isRegistered(xcb_keycode_t keycode, std::uint16_t mask) const {
  return std::any_of(chords_.begin(), chords_.end(), [keycode, mask](const auto& entry) {
    return entry.second.keycode == keycode && entry.second.mask == mask;
  });
}

Result<void, HotKeyError> X11HotKeys::grab(const Chord& chord) {
  if (!isFreeForInputExtension(chord)) return HotKeyError::alreadyTaken;
  std::vector<xcb_void_cookie_t> requests;
  for (const std::uint16_t mask : withLocks(chord.mask, masks_)) {
    requests.push_back(xcb_grab_key_checked(connection_.get(), 0, connection_.root(), mask,
                                            chord.keycode, XCB_GRAB_MODE_ASYNC,
                                            XCB_GRAB_MODE_ASYNC));
  }
  Result<void, HotKeyError> grabbed;
  for (const xcb_void_cookie_t& request : requests) {
    std::uint8_t error = 0;
    if (connection_.succeeded(request, &error)) continue;
    grabbed = error == XCB_ACCESS ? HotKeyError::alreadyTaken : invalidParameter;
  }
  if (!grabbed) ungrab(chord);
  return grabbed;
}

bool X11HotKeys::isFreeForInputExtension(const Chord& chord) {
  // A grab through XInput 2 does not stop a grab of the core protocol: the later one silently
  // wins. So one is tried and given back at once.
  std::vector<std::uint32_t> modifiers;
  for (const std::uint16_t mask : withLocks(chord.mask, masks_)) {
    modifiers.push_back(mask);
  }
  constexpr std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
  const auto count = static_cast<std::uint16_t>(modifiers.size());
  const auto refused = owned(xcb_input_xi_passive_grab_device_reply(
      connection_.get(),
      xcb_input_xi_passive_grab_device(
          connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, chord.keycode,
          XCB_INPUT_DEVICE_ALL_MASTER, count, 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
          XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &events, modifiers.data()),
      nullptr));
  xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), chord.keycode,
                                     XCB_INPUT_DEVICE_ALL_MASTER, count,
                                     XCB_INPUT_GRAB_TYPE_KEYCODE, modifiers.data());
  return !refused || refused->num_modifiers == 0;
}

void X11HotKeys::ungrab(const Chord& chord) {
  for (const std::uint16_t mask : withLocks(chord.mask, masks_)) {
    xcb_ungrab_key(connection_.get(), chord.keycode, connection_.root(), mask);
  }
  connection_.waitForServer();  // another program may take it from now on
}

void X11HotKeys::unregister(ChordId id) {
  const auto found = chords_.find(id);
  ungrab(found->second);
  chords_.erase(found);
}

void X11HotKeys::handle(const xcb_generic_event_t& event) {
  if ((event.response_type & 0x7f) != XCB_KEY_PRESS) return;
  grabbedKeyPressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
}

void X11HotKeys::grabbedKeyPressed(const xcb_key_press_event_t& event) {
  const auto mask = static_cast<std::uint16_t>(event.state & chordBits(masks_));
  for (const auto& [id, chord] : chords_) {
    if (chord.keycode != event.detail || chord.mask != mask) continue;
    giveKeyboardBack();
    keyboard_.catchUp();  // when the key went down is known from the keyboard
    if (takePress({event.detail, event.time})) fire(chord);
    return;
  }
}

bool X11HotKeys::takePress(const Press& press) {
  const auto found = std::find(presses_.begin(), presses_.end(), press);
  if (found == presses_.end()) return false;
  presses_.erase(found);
  return true;
}

void X11HotKeys::fire(const Chord& chord) {
  mainThread_.post([weak = std::weak_ptr(chord.pressed)] {
    if (const auto pressed = weak.lock()) (*pressed)();
  });
  if (keyboard_.isDown(chord.keycode)) hold(chord);
}

void X11HotKeys::keyChanged(const KeyChange& change) {
  if (change.posted) return;
  if (change.direction == KeyDirection::down) {
    presses_.push_back({change.keycode, change.time});
    if (presses_.size() > rememberedPresses) presses_.pop_front();
    return;
  }
  if (!held_) return;
  if (change.keycode == held_->keycode) {
    letHeldKeyGo();
  } else if ((keyboard_.keymap().modifierFlag(change.keycode) & event_flags::chordMask) != 0) {
    keepKeyboardUntilKeyIsUp();
  }
}

void X11HotKeys::hold(const Chord& chord) {
  if (held_) letHeldKeyGo();
  held_ = {chord.keycode, chord.mask};
  guardHeldKey();
  const std::uint64_t needed = keyboard_.keymap().flagsOfState(chord.mask);
  if ((keyboard_.heldFlags() & needed) != needed) keepKeyboardUntilKeyIsUp();
}

void X11HotKeys::letHeldKeyGo() {
  unguardHeldKey();
  held_.reset();
  if (isKeyboardKept_) giveKeyboardBack();
}

void X11HotKeys::guardHeldKey() {
  // A repeat with some of the modifiers gone takes the keyboard until the key is up. Where another
  // program owns that chord the server refuses, and the error is nobody's.
  forEachPartOf(held_->mask, [this](std::uint16_t part) {
    if (isRegistered(held_->keycode, part)) return;
    for (const std::uint16_t mask : withLocks(part, masks_)) {
      xcb_grab_key(connection_.get(), 0, connection_.root(), mask, held_->keycode,
                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    }
  });
  connection_.flush();
}

void X11HotKeys::unguardHeldKey() {
  forEachPartOf(held_->mask, [this](std::uint16_t part) {
    if (isRegistered(held_->keycode, part)) return;
    for (const std::uint16_t mask : withLocks(part, masks_)) {
      xcb_ungrab_key(connection_.get(), held_->keycode, connection_.root(), mask);
    }
  });
  connection_.flush();
}

void X11HotKeys::keepKeyboardUntilKeyIsUp() {
  if (isKeyboardKept_) return;
  isKeyboardKept_ = true;
  // A refusal means that another program has the keyboard: nothing is typed anywhere then.
  xcb_discard_reply(connection_.get(),
                    xcb_grab_keyboard(connection_.get(), 0, connection_.root(), XCB_CURRENT_TIME,
                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)
                        .sequence);
  connection_.flush();
}

void X11HotKeys::giveKeyboardBack() {
  isKeyboardKept_ = false;
  xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
  connection_.flush();
}

void X11HotKeys::lendKeyboard() {
  if (held_) letHeldKeyGo();
  giveKeyboardBack();
  connection_.waitForServer();  // the synthetic keys come on another connection
}

bool X11HotKeys::isKeyboardTaken() {
  // The server looks for another's grab before it looks at the window, and an unmapped window can
  // never get the grab: the question has no effect.
  const auto reply = owned(xcb_grab_keyboard_reply(
      connection_.get(),
      xcb_grab_keyboard(connection_.get(), 0, unmappedWindow_, XCB_CURRENT_TIME,
                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
      nullptr));
  return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

void X11HotKeys::layoutChanged() {
  const ModifierMasks& masks = keyboard_.keymap().masks();
  if (masks == masks_) return;
  if (held_) letHeldKeyGo();
  for (const auto& [id, chord] : chords_) ungrab(chord);
  masks_ = masks;
  for (auto& [id, chord] : chords_) {
    const auto mask = maskOf(chord.modifiers);
    if (mask) chord.mask = *mask;
    if (!mask || !grab(chord)) {
      log_.log("hotkey",
               "a shortcut is not free in the new keyboard layout id=" + std::to_string(id));
    }
  }
}

}  // namespace quillo::linux_host
