#include "simulation/explore/key_storm.h"

#include "state/cycle_hot_key_preset.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

constexpr Duration shortestTouch = 15ms;

// V only as a part of its chord: elsewhere the user would paste.
constexpr Key keysBetween[] = {Key::shift, Key::a,        Key::space,  Key::g,
                               Key::j,     Key::command,  Key::option, Key::rightControl,
                               Key::e,     Key::capsLock, Key::escape, Key::rightOption};

template <class Value, std::size_t size>
const Value& oneOf(simulated::SeededRandom& random, const Value (&values)[size]) {
  return values[random.below(size)];
}

}  // namespace

std::vector<Key> toggleKeys(const MacAppState& state) {
  switch (toggleShortcutFrom(state.toggleShortcut.get())) {
    case ToggleShortcut::ctrlOptSpace:
      return {Key::control, Key::option, Key::space};
    case ToggleShortcut::fn:
      return {Key::function};
    case ToggleShortcut::rightOpt:
      return {Key::rightOption};
  }
}

std::vector<Key> holdKeys(const MacAppState& state) {
  switch (holdShortcutFrom(state.holdShortcut.get())) {
    case HoldShortcut::ctrlOpt:
      return {Key::control, Key::option};
    case HoldShortcut::optCmd:
      return {Key::option, Key::command};
    case HoldShortcut::rightOpt:
      return {Key::rightOption};
    case HoldShortcut::fn:
      return {Key::function};
  }
}

// All presets are with control.
std::vector<Key> cycleKeys(const MacAppState& state) {
  return {Key::control, static_cast<Key>(state.cycleHotKeyKeyCode.get())};
}

void KeyStorm::rage() {
  world_.act(Act::hitsTheKeys);
  const std::uint64_t gusts = 3 + random_.below(12);
  for (std::uint64_t i = 0; i < gusts; ++i) {
    playChord();
    if (random_.chance(0.1)) changeShortcuts();
    world_.runFor(random_.chance(0.6) ? between(0ms, 120ms) : between(200ms, 1500ms));
  }
  releaseAll();
}

std::vector<Key> KeyStorm::someChord() {
  const MacAppState& state = world_.program().appState();
  switch (random_.below(8)) {
    case 0:
      return cycleKeys(state);
    case 1:
      return {Key::control, Key::command, Key::v};
    case 2:
      return {Key::control, Key::option};
    case 3:
      return {Key::rightOption};
    case 4:
      return {Key::function};
    case 5:
      return holdKeys(state);
    default:
      return toggleKeys(state);
  }
}

// Pressed in some order, with something between perhaps, and released in some other.
void KeyStorm::playChord() {
  std::vector<Key> chord = someChord();
  if (random_.chance(0.3)) shuffle(chord);
  for (const Key key : chord) {
    pressKey(key);
    if (random_.chance(0.6)) world_.runFor(between(0ms, 60ms));
    if (random_.chance(0.08)) pressBetween();
  }
  if (random_.chance(0.1)) bounce(chord.back());
  if (random_.chance(0.05)) changeShortcuts();
  hold();
  if (random_.chance(0.15)) return;  // the next chord overlaps with this one
  if (random_.chance(0.5)) shuffle(chord);
  for (const Key key : chord) {
    world_.releaseKey(key);
    if (random_.chance(0.6)) world_.runFor(between(0ms, 60ms));
  }
}

void KeyStorm::pressKey(Key key) {
  if (key == Key::v) world_.act(Act::pastesLast);
  world_.pressKey(key);
}

// Around the threshold of a hold, or long enough for the key to repeat itself.
void KeyStorm::hold() {
  const std::uint64_t way = random_.below(10);
  if (way < 5) return world_.runFor(between(shortestTouch, 150ms));
  if (way < 8) return world_.runFor(between(200ms, 320ms));
  world_.runFor(between(500ms, 2500ms));
}

void KeyStorm::bounce(Key key) {
  world_.releaseKey(key);
  world_.runFor(between(shortestTouch, 60ms));
  pressKey(key);
}

void KeyStorm::pressBetween() {
  const Key key = oneOf(random_, keysBetween);
  if (world_.desktop().keyboard().keysDown().contains(key)) return;
  world_.pressKey(key);
  world_.runFor(between(shortestTouch, 100ms));
  if (random_.chance(0.7)) world_.releaseKey(key);
}

void KeyStorm::changeShortcuts() {
  constexpr const char* modes[] = {"toggle", "hold"};
  constexpr const char* toggles[] = {"ctrl_opt_space", "fn", "right_opt"};
  constexpr const char* holds[] = {"ctrl_opt", "opt_cmd", "right_opt", "fn"};
  MacAppState& state = world_.program().appState();
  world_.runFor({});  // no hand is quicker than the keys that it has just hit
  switch (random_.below(4)) {
    case 0:
      state.activationMode = oneOf(random_, modes);
      break;
    case 1:
      state.toggleShortcut = oneOf(random_, toggles);
      break;
    case 2:
      state.holdShortcut = oneOf(random_, holds);
      break;
    default: {
      const CycleHotKeyPreset& preset =
          cycleHotKeyPresets[random_.below(cycleHotKeyPresets.size())];
      state.cycleHotKeyKeyCode = preset.keyCode;
      state.cycleHotKeyModifiers = preset.modifiers;
    }
  }
}

void KeyStorm::releaseAll() {
  const std::set<Key> down = world_.desktop().keyboard().keysDown();
  std::vector<Key> keys(down.begin(), down.end());
  shuffle(keys);
  for (const Key key : keys) {
    world_.releaseKey(key);
    world_.runFor(between(0ms, 60ms));
  }
}

}  // namespace quillo::sim
