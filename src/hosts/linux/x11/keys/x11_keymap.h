// The keyboard's layout.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// Bits of the core protocol's modifier state that stand for the modifiers of a chord; 0 for one
// that no key of the layout has.
struct ModifierMasks {
  std::uint16_t shift = XCB_MOD_MASK_SHIFT;
  std::uint16_t control = XCB_MOD_MASK_CONTROL;
  std::uint16_t option = 0;
  std::uint16_t command = 0;
  std::uint16_t capsLock = XCB_MOD_MASK_LOCK;
  std::uint16_t numLock = 0;

  friend bool operator==(const ModifierMasks&, const ModifierMasks&) = default;
};

// Main thread. The layout is read again when it is needed after it changed.
class X11Keymap {
 public:
  // Null when the server lacks the keyboard extension. `connection` outlives the keymap.
  static std::unique_ptr<X11Keymap> open(X11Connection& connection);
  ~X11Keymap();

  // True for an event that tells of another layout.
  bool noticesLayoutChange(const xcb_generic_event_t& event);

  const ModifierMasks& masks() { return layout().masks; }
  // The event flag of the modifier that this key is, by its keysym; 0 for any other key. AltGr is
  // an option key; the key that some notebooks call XF86WakeUp is Fn.
  std::uint64_t modifierFlag(xcb_keycode_t keycode) { return layout().flagOfKey[keycode]; }
  // Event flags of a modifier state of the core protocol.
  std::uint64_t flagsOfState(std::uint32_t state);
  // What the key types without modifiers in the layout group that is in use; nothing for a key
  // that types no text.
  std::optional<std::string> characters(xcb_keycode_t keycode);
  // The key that gives this keysym without modifiers, preferably in the group in use.
  std::optional<xcb_keycode_t> keycodeTyping(xkb_keysym_t keysym);
  bool isCapsLockOn() const { return isCapsLockOn_; }

 private:
  struct Unref {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
  };
  struct Layout {
    std::unique_ptr<xkb_keymap, Unref> keymap;
    ModifierMasks masks;
    std::array<std::uint64_t, 256> flagOfKey{};
  };

  explicit X11Keymap(X11Connection& connection);
  const Layout& layout();
  Layout readLayout() const;
  ModifierMasks readMasks(xkb_keymap* keymap) const;

  X11Connection& connection_;
  std::unique_ptr<xkb_context, Unref> context_;
  std::int32_t device_ = 0;
  std::uint8_t firstEvent_ = 0;
  std::optional<Layout> layout_;
  xkb_layout_index_t group_ = 0;
  bool isCapsLockOn_ = false;
};

}  // namespace quillo::linux_host
