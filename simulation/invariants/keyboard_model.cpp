#include "simulation/invariants/keyboard_model.h"

#include <utility>

#include "hosts/simulated/keyboard/key_codes.h"
#include "platform/keyboard.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using simulated::Key;

constexpr std::uint64_t controlAndOption = event_flags::control | event_flags::option;

constexpr std::int64_t codeOf(Key key) {
  return static_cast<std::int64_t>(key);
}

// Registered hot keys have bits of their own for the modifiers.
std::uint64_t flagsOf(std::uint32_t modifiers) {
  std::uint64_t flags = 0;
  constexpr std::pair<std::uint32_t, std::uint64_t> forms[] = {
      {hot_key_modifiers::command, event_flags::command},
      {hot_key_modifiers::shift, event_flags::shift},
      {hot_key_modifiers::option, event_flags::option},
      {hot_key_modifiers::control, event_flags::control}};
  for (const auto& [modifier, flag] : forms)
    if (modifiers & modifier) flags |= flag;
  return flags;
}

bool isDownEvent(const Event& event) {
  return textOf(event, "direction") == "down";
}

}  // namespace

void KeyboardModel::see(const Event& event) {
  if (event.what == "shortcuts") bind(event);
  if (event.what == "userKey") move(event);
  // The program's own keys are events like others; the keyboards do not know them.
  if (event.what == "key" && simulated::modifierBitsOf(event.fields.at("keyCode"))) {
    const bool wasHeldByKeyboards = isHeldByKeyboards_;
    judge(event.fields.at("keyCode"), event.fields.at("flags"));
    isHeldByKeyboards_ = wasHeldByKeyboards;
  }
}

void KeyboardModel::bind(const Event& event) {
  const std::int64_t cycleKeyCode = event.fields.at("cycleKeyCode");
  bound_ = {
      .activationMode = textOf(event, "activationMode"),
      .toggleShortcut = textOf(event, "toggleShortcut"),
      .holdShortcut = textOf(event, "holdShortcut"),
      .cycleKeyCode = cycleKeyCode,
      .cycleFlags = flagsOf(event.fields.at("cycleModifiers")),
      .cycleTypes =
          simulated::charactersOf(cycleKeyCode, simulated::KeyboardLayout::us).value_or(""),
  };
  if (event.fields.at("rebinds") == false) return;
  isRightOptionFlagged_ = false;
  isHeldByFlags_ = false;
  isHeldByKeyboards_ = false;
}

void KeyboardModel::move(const Event& event) {
  const std::int64_t keyCode = event.fields.at("keyCode");
  if (isDownEvent(event))
    down_.insert(keyCode);
  else
    down_.erase(keyCode);
  if (simulated::modifierBitsOf(keyCode) || keyCode == codeOf(Key::capsLock))
    judge(keyCode, flags());
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
  if (event.what != "userKey" || !isDownEvent(event) || isHoldMode() || isTapMode()) return false;
  return event.fields.at("keyCode") == codeOf(Key::space) &&
         (flags() & event_flags::chordMask) == controlAndOption;
}

bool KeyboardModel::pressesCycleChord(const Event& event) const {
  if (event.what != "userKey" || !isDownEvent(event)) return false;
  if ((flags() & event_flags::chordMask) != bound_.cycleFlags) return false;
  return event.fields.at("keyCode") == bound_.cycleKeyCode ||
         textOf(event, "types") == bound_.cycleTypes;
}

}  // namespace quillo::sim
