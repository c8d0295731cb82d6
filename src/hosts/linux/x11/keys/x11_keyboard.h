// What all keyboards of the desktop do, and the keys that this program presses itself.
#pragma once

#include <xcb/xcb.h>

#include <bitset>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

#include "base/main_thread.h"
#include "hosts/linux/posix/observer_list.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"
#include "hosts/linux/x11/keys/x11_keymap.h"
#include "platform/key_event.h"

namespace quillo::linux_host {

// A key as a caller of the key poster named it.
struct PostedKey {
  std::int64_t keyCode = 0;
  std::uint64_t flags = 0;
  std::int64_t userData = 0;
};

struct KeyChange {
  xcb_keycode_t keycode = 0;
  KeyDirection direction = KeyDirection::down;
  xcb_timestamp_t time = 0;  // the server's
  std::uint64_t flags = 0;   // of the modifiers that the user holds after the change
  // Set for a key that this program posted. Keys of other programs count as the user's.
  std::optional<PostedKey> posted;
};

// That are down, whoever holds them.
struct HeldKeys {
  std::vector<xcb_keycode_t> modifiers;  // of chords
  std::vector<xcb_keycode_t> others;
};

// Main thread. Keys come as raw events of XInput 2, also while a program holds a grab; there is no
// autorepeat in them.
class X11Keyboard {
 public:
  // Null when the server lacks the keyboard extension, XInput 2.1 or XTest. All arguments outlive
  // the keyboard.
  static std::unique_ptr<X11Keyboard> open(MainThread& mainThread, X11Connection& connection,
                                           X11EventSource& events);

  X11Keymap& keymap() { return *keymap_; }
  bool isDown(xcb_keycode_t keycode) const { return down_[keycode]; }
  // Flags of the modifiers that the user holds, as far as the events have told.
  std::uint64_t heldFlags() { return flagsOf(down_); }

  // Until the result is dropped.
  [[nodiscard]] std::shared_ptr<void> observeKeys(std::function<void(const KeyChange&)> observer) {
    return keyObservers_.add(std::move(observer));
  }
  [[nodiscard]] std::shared_ptr<void> observeLayout(std::function<void()> observer) {
    return layoutObservers_.add(std::move(observer));
  }

  // --- Questions to the server, one round trip each ---
  // Flags of the modifiers that are down, whoever holds them, and of caps lock.
  std::uint64_t modifierFlags();
  HeldKeys heldKeys();
  // Knows of every key and layout up to now; the callers' observers have been told.
  void catchUp() { events_.catchUp(); }

  // --- Synthetic keys ---
  // Observers see it as the posted key; without one they do not see it at all.
  void fake(xcb_keycode_t keycode, KeyDirection direction, std::optional<PostedKey> seenAs);

 private:
  struct ExpectedKey {
    xcb_keycode_t keycode;
    KeyDirection direction;
    MonotonicTime posted;
    std::optional<PostedKey> seenAs;
  };

  X11Keyboard(MainThread& mainThread, X11Connection& connection, X11EventSource& events,
              std::unique_ptr<X11Keymap> keymap);
  bool selectInput();
  void findSyntheticDevices();
  bool isSyntheticDevice(std::uint16_t device) const;
  void handle(const xcb_generic_event_t& event);
  void keyChanged(KeyChange change, std::uint16_t source);
  std::optional<ExpectedKey> takeExpected(xcb_keycode_t keycode, KeyDirection direction);
  std::bitset<256> readDownKeys() const;
  std::uint64_t flagsOf(const std::bitset<256>& down);

  MainThread& mainThread_;
  X11Connection& connection_;
  X11EventSource& events_;
  std::unique_ptr<X11Keymap> keymap_;
  std::uint8_t inputOpcode_ = 0;
  std::unordered_set<std::uint16_t> syntheticDevices_;
  std::bitset<256> down_;  // by the user
  std::deque<ExpectedKey> expected_;
  ObserverList<const KeyChange&> keyObservers_;
  ObserverList<> layoutObservers_;
  std::shared_ptr<void> subscription_;
};

}  // namespace quillo::linux_host
