#include "hosts/linux/x11/keys/x11_key_poster.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <utility>

#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo::linux_host {
namespace {

// Where these keys lie when the layout does not name them.
constexpr xcb_keycode_t leftControlKeycode = keycodeAtPosition(codeOf(Key::control)).value();
constexpr xcb_keycode_t leftShiftKeycode = keycodeAtPosition(codeOf(Key::shift)).value();
constexpr xcb_keycode_t insertKeycode = keycodeAtPosition(codeOf(Key::insert)).value();

bool contains(const std::vector<xcb_keycode_t>& keycodes, xcb_keycode_t keycode) {
  return std::find(keycodes.begin(), keycodes.end(), keycode) != keycodes.end();
}

}  // namespace

X11KeyPoster::X11KeyPoster(X11Connection& connection, X11Keyboard& keyboard, X11HotKeys& hotKeys,
                           Desktop desktop)
    : connection_(connection),
      keyboard_(keyboard),
      hotKeys_(hotKeys),
      desktop_(std::move(desktop)) {}

Result<void, KeyPosterFailure> X11KeyPoster::post(std::int64_t keyCode, KeyDirection direction,
                                                  std::uint64_t flags, std::int64_t userData) {
  if (connection_.isBroken()) return KeyPosterFailure::unavailable;
  const PostedKey key{keyCode, flags, userData};
  bool isPosted = true;
  if (keyCode == codeOf(Key::command)) {
    // Which modifiers stand for Command is known only when the chord's key follows.
    command_.reset();
    pressed_.reset();
    if (direction == KeyDirection::down) command_ = key;
  } else if (direction == KeyDirection::down) {
    isPosted = press(key);
  } else {
    isPosted = release(key);
  }
  connection_.flush();
  if (!isPosted) return KeyPosterFailure::noSuchKey;
  return {};
}

bool X11KeyPoster::press(const PostedKey& key) {
  if (!command_) return postPlain(key, KeyDirection::down);
  keyboard_.catchUp();  // the layout may have changed just now
  const auto chord = chordFor(key.keyCode);
  if (!chord || pressed_) return false;
  if (chord->selection == Selection::primary) desktop_.lendClipboardAsPrimary();
  const HeldKeys held = keyboard_.heldKeys();
  letKeysGo(held.others);
  hotKeys_.lendKeyboard();
  pressModifiers(*chord, *command_, held.modifiers);
  keyboard_.fake(chord->key, KeyDirection::down, key);
  keyboard_.fake(chord->key, KeyDirection::up, key);
  releaseModifiers(*chord, {codeOf(Key::command), 0, command_->userData});
  pressed_ = key.keyCode;
  return true;
}

bool X11KeyPoster::release(const PostedKey& key) {
  if (!command_) return postPlain(key, KeyDirection::up);
  return pressed_ == key.keyCode;
}

bool X11KeyPoster::postPlain(const PostedKey& key, KeyDirection direction) {
  const auto keycode = keycodeAtPosition(key.keyCode);
  if (!keycode) return false;
  keyboard_.fake(*keycode, direction, key);
  return true;
}

void X11KeyPoster::letKeysGo(const std::vector<xcb_keycode_t>& keys) {
  for (const xcb_keycode_t key : keys) keyboard_.fake(key, KeyDirection::up, std::nullopt);
  connection_.waitForServer();  // the hot keys have a connection of their own
}

void X11KeyPoster::pressModifiers(const Chord& chord, const PostedKey& command,
                                  std::vector<xcb_keycode_t> held) {
  std::erase_if(held, [&](xcb_keycode_t keycode) { return contains(chord.modifiers, keycode); });

  const xcb_keycode_t control = keycodeOf(XKB_KEY_Control_L, leftControlKeycode);
  // An Alt that goes up alone opens the menu bar of some applications; with Control down it does
  // not, so Control goes down first.
  const bool isGuarded = !held.empty() && !contains(chord.modifiers, control);
  if (isGuarded) {
    keyboard_.fake(control, KeyDirection::down, std::nullopt);
    std::erase(held, control);  // the user's own goes up last, with it
  }
  bool isSeen = false;
  for (const xcb_keycode_t modifier : chord.modifiers) {
    keyboard_.fake(modifier, KeyDirection::down, isSeen ? std::nullopt : std::optional(command));
    isSeen = true;
  }
  for (const xcb_keycode_t modifier : held) {
    keyboard_.fake(modifier, KeyDirection::up, std::nullopt);
  }
  if (isGuarded) keyboard_.fake(control, KeyDirection::up, std::nullopt);
}

void X11KeyPoster::releaseModifiers(const Chord& chord, const PostedKey& command) {
  const std::vector<xcb_keycode_t>& modifiers = chord.modifiers;
  for (auto modifier = modifiers.rbegin(); modifier != modifiers.rend(); ++modifier) {
    const bool isLast = std::next(modifier) == modifiers.rend();
    keyboard_.fake(*modifier, KeyDirection::up, isLast ? std::optional(command) : std::nullopt);
  }
}

std::optional<X11KeyPoster::Chord> X11KeyPoster::chordFor(std::int64_t keyCode) const {
  if (keyCode == codeOf(Key::v)) return pasteChord();
  if (keyCode == codeOf(Key::c)) return copyChord();
  const auto keycode = keycodeAtPosition(keyCode);
  if (!keycode) return std::nullopt;
  return Chord{{keycodeOf(XKB_KEY_Control_L, leftControlKeycode)}, *keycode};
}

std::optional<X11KeyPoster::Chord> X11KeyPoster::pasteChord() const {
  const xcb_keycode_t control = keycodeOf(XKB_KEY_Control_L, leftControlKeycode);
  const xcb_keycode_t shift = keycodeOf(XKB_KEY_Shift_L, leftShiftKeycode);
  const xcb_keycode_t insert = keycodeOf(XKB_KEY_Insert, insertKeycode);
  const auto v = keyboard_.keymap().keycodeTyping(XKB_KEY_v);
  switch (desktop_.pasteShortcut()) {
    case PasteShortcut::control:
      return v ? Chord{{control}, *v} : Chord{{shift}, insert};
    case PasteShortcut::controlShift:
      // Terminals paste the primary selection with Shift and Insert.
      return v ? Chord{{control, shift}, *v} : Chord{{shift}, insert, Selection::primary};
    case PasteShortcut::shiftInsert:
      return Chord{{shift}, insert, Selection::primary};
  }
  return std::nullopt;
}

std::optional<X11KeyPoster::Chord> X11KeyPoster::copyChord() const {
  const xcb_keycode_t control = keycodeOf(XKB_KEY_Control_L, leftControlKeycode);
  const xcb_keycode_t shift = keycodeOf(XKB_KEY_Shift_L, leftShiftKeycode);
  const auto c = keyboard_.keymap().keycodeTyping(XKB_KEY_c);
  switch (desktop_.pasteShortcut()) {
    case PasteShortcut::control:
      return c ? Chord{{control}, *c} : Chord{{control}, keycodeOf(XKB_KEY_Insert, insertKeycode)};
    case PasteShortcut::controlShift:
      // Control and C alone would end the program in the terminal.
      return c ? std::optional(Chord{{control, shift}, *c}) : std::nullopt;
    case PasteShortcut::shiftInsert:
      return std::nullopt;  // no chord of theirs copies to the clipboard
  }
  return std::nullopt;
}

xcb_keycode_t X11KeyPoster::keycodeOf(std::uint32_t keysym, xcb_keycode_t otherwise) const {
  return keyboard_.keymap().keycodeTyping(keysym).value_or(otherwise);
}

}  // namespace quillo::linux_host
