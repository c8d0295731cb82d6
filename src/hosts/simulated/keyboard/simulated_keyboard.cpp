#include "hosts/simulated/keyboard/simulated_keyboard.h"

#include <utility>

namespace quillo::simulated {
namespace {

constexpr std::uint64_t numLockBit = 0x80;
// Bits above the device-dependent ones.
constexpr std::uint64_t independentMask = ~0xFFFFULL;

bool isLock(Key key) {
  return key == Key::capsLock || key == Key::numLock;
}
bool isModifier(std::int64_t keyCode) {
  return modifierBitsOf(keyCode).has_value() || isLock(Key{keyCode});
}

}  // namespace

// --- Keys of the user ---

void SimulatedKeyboard::press(Key key) {
  if (!down_.insert(key).second) return;
  if (key == Key::capsLock) capsLockOn_ = !capsLockOn_;
  if (key == Key::numLock) numLockOn_ = !numLockOn_;
  change(key, KeyDirection::down);
  if (!isModifier(static_cast<std::int64_t>(key))) startRepeating(key);
}

void SimulatedKeyboard::release(Key key) {
  if (down_.erase(key) == 0) return;
  timeline_.cancel(nextRepeat_);
  change(key, KeyDirection::up);
}

void SimulatedKeyboard::tap(const std::vector<Key>& chord, Duration held) {
  for (const Key key : chord) press(key);
  timeline_.after(held, [this, chord] {
    for (auto key = chord.rbegin(); key != chord.rend(); ++key) release(*key);
  });
}

void SimulatedKeyboard::change(Key key, KeyDirection direction) {
  if (!isSecureInput_) {
    const std::int64_t value = direction == KeyDirection::down ? 1 : 0;
    if (key == Key::function) routes_.hid.tell({hid::vendorPage, hid::vendorFunction, value});
    if (const auto usage = usageOf(key)) routes_.hid.tell({hid::keyboardPage, *usage, value});
  }
  const auto keyCode = static_cast<std::int64_t>(key);
  if (isModifier(keyCode)) updateFlags();
  send(eventFor(keyCode, direction));
}

void SimulatedKeyboard::updateFlags() {
  flags_ = capsLockOn_ ? event_flags::capsLock : 0;
  if (numLockOn_) flags_ |= numLockBit;
  for (const Key key : down_) {
    if (const auto bits = modifierBitsOf(static_cast<std::int64_t>(key)))
      flags_ |= bits->flag | bits->deviceBit;
  }
}

KeyEvent SimulatedKeyboard::eventFor(std::int64_t keyCode, KeyDirection direction) const {
  KeyEvent event;
  event.type = isModifier(keyCode)               ? KeyEvent::Type::flagsChanged
               : direction == KeyDirection::down ? KeyEvent::Type::keyDown
                                                 : KeyEvent::Type::keyUp;
  event.keyCode = keyCode;
  event.flags = flags_;
  event.charactersIgnoringModifiers = charactersOf(keyCode, layout_);
  return event;
}

void SimulatedKeyboard::setAutorepeat(Duration first, Duration interval) {
  firstRepeat_ = first;
  repeatInterval_ = interval;
}

void SimulatedKeyboard::startRepeating(Key key) {
  timeline_.cancel(nextRepeat_);
  if (firstRepeat_ > Duration::zero())
    nextRepeat_ = timeline_.after(firstRepeat_, [this, key] { repeat(key); });
}

void SimulatedKeyboard::repeat(Key key) {
  KeyEvent event = eventFor(static_cast<std::int64_t>(key), KeyDirection::down);
  event.isAutorepeat = true;
  send(event);
  nextRepeat_ = timeline_.after(repeatInterval_, [this, key] { repeat(key); });
}

// --- Posted keys ---

Result<void, KeyPosterFailure> SimulatedKeyboard::post(std::int64_t keyCode, KeyDirection direction,
                                                       std::uint64_t flags, std::int64_t userData) {
  if (refusesPosts_) return KeyPosterFailure::unavailable;
  posted_.push_back({keyCode, direction, flags, userData, timeline_.now()});
  if (direction == KeyDirection::down)
    postedDown_.insert(keyCode);
  else
    postedDown_.erase(keyCode);
  // A posted modifier changes what the system takes for held, the user's own keys included.
  if (isModifier(keyCode)) flags_ = flags;
  // The latest key ends the repeats of the one before.
  if (!isModifier(keyCode) && direction == KeyDirection::down) timeline_.cancel(nextRepeat_);
  KeyEvent event = eventFor(keyCode, direction);
  event.flags = flags;
  event.userData = userData;
  if (flags & event_flags::command) {
    const bool isShortcut = keyCode == static_cast<std::int64_t>(Key::v) ||
                            keyCode == static_cast<std::int64_t>(Key::c);
    if (isShortcut) event.charactersIgnoringModifiers = charactersOf(keyCode, KeyboardLayout::us);
  }
  if (!isSecureInput_) send(event);
  return {};
}

std::uint64_t SimulatedKeyboard::modifierFlags() const {
  return flags_ & independentMask;
}

// --- The way of an event ---

void SimulatedKeyboard::send(KeyEvent event) {
  travelling_.push_back(std::move(event));
  moveOn();
}

void SimulatedKeyboard::moveOn() {
  while (!travelling_.empty() && !tapsAreThinking_) {
    const KeyEvent first = std::move(travelling_.front());
    travelling_.pop_front();
    const bool isTapped =
        first.type == KeyEvent::Type::keyDown && !isSecureInput_ && routes_.taps.isWatching();
    if (!isTapped) {
      deliver(first);
      continue;
    }
    tapsAreThinking_ = true;
    routes_.taps.offer(first, [this, first](TapVerdict verdict) {
      tapsAreThinking_ = false;
      if (verdict == TapVerdict::pass) deliver(first);
      moveOn();
    });
  }
}

void SimulatedKeyboard::deliver(const KeyEvent& event) {
  if (routes_.hotKeys.claim(event)) return;
  SimulatedApplication* receiver = workspace_.frontmost();
  if (receiver == &workspace_.self()) {
    routes_.monitors.showLocally(event, [receiver, event] { receiver->receive(event); });
    return;
  }
  if (!isSecureInput_) routes_.monitors.showGlobally(event);
  if (receiver) receiver->receive(event);
}

}  // namespace quillo::simulated
