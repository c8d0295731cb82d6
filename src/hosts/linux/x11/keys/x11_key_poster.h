// Synthetic keys by XTest.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "hosts/linux/session/application_table.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/keys/x11_hot_keys.h"
#include "hosts/linux/x11/keys/x11_keyboard.h"
#include "platform/key_event.h"
#include "platform/key_poster.h"

namespace quillo::linux_host {

// Main thread. Command with V or C becomes the chord by which the focused application pastes or
// copies; Command with another key becomes Control with the key at that position. The whole chord
// is pressed and let go when its key goes down: on a busy machine the caller's release may come so
// late that the key repeats, and it would let a modifier go that the user pressed meanwhile. The
// keys that the user holds are let go for it, and the user's own release of them later does no
// harm: the server ignores the press of a key that is down already, as that of Paste Last Result's
// own V, and a chord that repeats takes the keyboard from the application.
class X11KeyPoster final : public KeyPoster {
 public:
  struct Desktop {
    // How the focused application pastes.
    std::function<PasteShortcut()> pasteShortcut;
    // Makes what the clipboard holds the primary selection as well.
    std::function<void()> lendClipboardAsPrimary;
  };
  // The references outlive this.
  X11KeyPoster(X11Connection& connection, X11Keyboard& keyboard, X11HotKeys& hotKeys,
               Desktop desktop);

  Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                      std::uint64_t flags, std::int64_t userData) override;

 private:
  enum class Selection { clipboard, primary };
  struct Chord {
    std::vector<xcb_keycode_t> modifiers;
    xcb_keycode_t key = 0;
    Selection selection = Selection::clipboard;
  };

  // Nothing when the focused application has no such chord, or the keyboard no such key.
  std::optional<Chord> chordFor(std::int64_t keyCode) const;
  std::optional<Chord> pasteChord() const;
  std::optional<Chord> copyChord() const;
  bool press(const PostedKey& key);
  bool release(const PostedKey& key);
  bool postPlain(const PostedKey& key, KeyDirection direction);
  void letKeysGo(const std::vector<xcb_keycode_t>& keys);
  void pressModifiers(const Chord& chord, const PostedKey& command,
                      std::vector<xcb_keycode_t> held);
  void releaseModifiers(const Chord& chord, const PostedKey& command);
  xcb_keycode_t keycodeOf(std::uint32_t keysym, xcb_keycode_t otherwise) const;

  X11Connection& connection_;
  X11Keyboard& keyboard_;
  X11HotKeys& hotKeys_;
  Desktop desktop_;
  std::optional<PostedKey> command_;     // asked to go down
  std::optional<std::int64_t> pressed_;  // the key code of the chord that was posted
};

}  // namespace quillo::linux_host
