#include "simulation/invariants/keyboard_model.h"

#include <utility>

#include "hosts/simulated/keyboard/key_codes.h"
#include "platform/hot_keys.h"
#include "platform/key_event.h"

namespace quillo::sim {
namespace {

constexpr std::uint64_t controlAndOption = event_flags::control | event_flags::option;

// A key of the user that goes down; null for every other event.
const events::UserKey* pressIn(const Event& event) {
  const auto* key = event.as<events::UserKey>();
  return key && key->direction == KeyDirection::down ? key : nullptr;
}

}  // namespace

void KeyboardModel::see(const Event& event) {
  if (const auto* shortcuts = event.as<events::Shortcuts>()) bind(*shortcuts);
  if (const auto* key = event.as<events::UserKey>()) move(*key);
  // The program's own keys are events like others; the keyboards do not know them.
  if (const auto* key = event.as<events::Key>(); key && simulated::modifierBitsOf(key->keyCode)) {
    const bool wasHeldByKeyboards = isHeldByKeyboards_;
    judge(key->keyCode, key->flags);
    isHeldByKeyboards_ = wasHeldByKeyboards;
  }
}

void KeyboardModel::bind(const events::Shortcuts& shortcuts) {
  bound_ = shortcuts;
  cycleFlags_ = eventFlagsFrom(shortcuts.cycleModifiers);
  cycleTypes_ =
      simulated::charactersOf(shortcuts.cycleKeyCode, simulated::KeyboardLayout::us).value_or("");
  if (!shortcuts.rebinds) return;
  isRightOptionFlagged_ = false;
  isHeldByFlags_ = false;
  isHeldByKeyboards_ = false;
}

void KeyboardModel::move(const events::UserKey& key) {
  if (key.direction == KeyDirection::down)
    down_.insert(key.keyCode);
  else
    down_.erase(key.keyCode);
  if (simulated::modifierBitsOf(key.keyCode) || key.keyCode == codeOf(Key::capsLock))
    judge(key.keyCode, flags());
}

std::uint64_t KeyboardModel::flags() const {
  std::uint64_t all = 0;
  for (const std::int64_t keyCode : down_)
    if (const auto bits = simulated::modifierBitsOf(keyCode)) all |= bits->flag;
  return all;
}

void KeyboardModel::judge(std::int64_t keyCode, std::uint64_t flags) {
  if (!isHoldMode() && !isTapMode()) return;
  if (keyCode == codeOf(Key::rightOption))
    isRightOptionFlagged_ = (flags & event_flags::option) != 0;
  isHeldByFlags_ = holdsByFlags(flags);
  isHeldByKeyboards_ = holdsByKeyboards();
}

bool KeyboardModel::isTapMode() const {
  return bound_.activationMode == "toggle" &&
         (bound_.toggleShortcut == "fn" || bound_.toggleShortcut == "right_opt");
}

std::string KeyboardModel::shortcut() const {
  return isTapMode() ? bound_.toggleShortcut : bound_.holdShortcut;
}

bool KeyboardModel::holdsByFlags(std::uint64_t flags) const {
  const std::uint64_t chord = flags & event_flags::chordMask;
  const std::string held = shortcut();
  if (held == "opt_cmd") return chord == (event_flags::option | event_flags::command);
  if (held == "right_opt") return isRightOptionFlagged_ && (chord & ~event_flags::option) == 0;
  if (held == "fn") return (flags & event_flags::function) && chord == 0;
  return chord == controlAndOption;
}

bool KeyboardModel::holdsByKeyboards() const {
  const std::uint64_t chord = flags() & event_flags::chordMask;
  const std::string held = shortcut();
  if (held == "opt_cmd") return chord == (event_flags::option | event_flags::command);
  if (held == "right_opt")
    return chord == event_flags::option && isDown(codeOf(Key::rightOption)) &&
           !isDown(codeOf(Key::option));
  if (held == "fn") return isDown(codeOf(Key::function)) && chord == 0;
  return chord == controlAndOption;
}

bool KeyboardModel::pressesToggleChord(const Event& event) const {
  const auto* key = pressIn(event);
  if (!key || isHoldMode() || isTapMode()) return false;
  return key->keyCode == codeOf(Key::space) &&
         (flags() & event_flags::chordMask) == controlAndOption;
}

bool KeyboardModel::pressesCycleChord(const Event& event) const {
  const auto* key = pressIn(event);
  if (!key || (flags() & event_flags::chordMask) != cycleFlags_) return false;
  return key->keyCode == bound_.cycleKeyCode || key->types == cycleTypes_;
}

}  // namespace quillo::sim
