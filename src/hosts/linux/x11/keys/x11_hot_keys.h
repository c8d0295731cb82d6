// Registered hot keys as passive grabs of the X server.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "base/log.h"
#include "base/main_thread.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"
#include "hosts/linux/x11/keys/x11_keyboard.h"
#include "platform/hot_keys.h"

namespace quillo::linux_host {

// Main thread. While a grabbed chord is down the server takes the keyboard from the focused
// application, which then seems unfocused and receives no paste. So the keyboard is given back as
// soon as the chord is seen. The repeats of the key are kept from the application also when the
// user lets a modifier go first.
//
// The grabs have a connection of their own: the server keeps raw events from the connection that
// holds a grab, and the keyboard's must not miss a key.
class X11HotKeys final : public HotKeys {
 public:
  // All arguments outlive the hot keys. `connection` and `events` are theirs alone.
  X11HotKeys(MainThread& mainThread, X11Connection& connection, X11EventSource& events,
             X11Keyboard& keyboard, Log& log);
  ~X11HotKeys() override;

  Result<std::shared_ptr<void>, HotKeyError> registerHotKey(std::uint32_t keyCode,
                                                            std::uint32_t modifiers,
                                                            std::function<void()> pressed) override;

  // Synthetic keys reach the focused application from now on, also while the user holds a chord
  // whose key has been let go for them: it repeats no more.
  void lendKeyboard();

  // Whether another program holds a grab of the keyboard, and so gets every keystroke.
  bool isKeyboardTaken();

 private:
  struct Chord {
    xcb_keycode_t keycode = 0;
    std::uint32_t modifiers = 0;
    std::uint16_t mask = 0;
    std::shared_ptr<std::function<void()>> pressed;
  };
  using ChordId = std::uint64_t;
  struct Press {
    xcb_keycode_t keycode = 0;
    xcb_timestamp_t time = 0;

    friend bool operator==(const Press&, const Press&) = default;
  };

  // The layout has no key for one of the modifiers: nothing.
  std::optional<std::uint16_t> maskOf(std::uint32_t modifiers) const;
  Result<void, HotKeyError> grab(const Chord& chord);
  bool isRegistered(xcb_keycode_t keycode, std::uint16_t mask) const;
  bool isFreeForInputExtension(const Chord& chord);
  void ungrab(const Chord& chord);
  void unregister(ChordId id);

  void handle(const xcb_generic_event_t& event);
  void grabbedKeyPressed(const xcb_key_press_event_t& event);
  void fire(const Chord& chord);
  bool takePress(const Press& press);
  void keyChanged(const KeyChange& change);
  void layoutChanged();
  void hold(const Chord& chord);
  void letHeldKeyGo();
  void guardHeldKey();
  void unguardHeldKey();
  void keepKeyboardUntilKeyIsUp();
  void giveKeyboardBack();

  MainThread& mainThread_;
  X11Connection& connection_;
  X11Keyboard& keyboard_;
  Log& log_;
  xcb_window_t unmappedWindow_;
  ModifierMasks masks_;  // of the layout in which the chords are grabbed
  std::map<ChordId, Chord> chords_;
  ChordId nextId_ = 1;
  // When keys went down lately: a grabbed press at any other time is autorepeat.
  std::deque<Press> presses_;
  struct HeldKey {
    xcb_keycode_t keycode = 0;
    std::uint16_t mask = 0;
  };
  std::optional<HeldKey> held_;  // of the chord that fired and whose key is still down
  bool isKeyboardKept_ = false;
  std::shared_ptr<void> alive_ = std::make_shared<int>();
  std::shared_ptr<void> subscriptions_[3];
};

}  // namespace quillo::linux_host
