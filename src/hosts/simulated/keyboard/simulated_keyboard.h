// The one keyboard of the desktop, and the way of its events.
#pragma once

#include <cstdint>
#include <deque>
#include <set>
#include <vector>

#include "hosts/simulated/desktop/simulated_workspace.h"
#include "hosts/simulated/keyboard/key_codes.h"
#include "hosts/simulated/keyboard/registered_hot_keys.h"
#include "hosts/simulated/keyboard/routed_event_monitors.h"
#include "hosts/simulated/keyboard/routed_hid_keyboards.h"
#include "hosts/simulated/keyboard/swallowing_event_taps.h"
#include "platform/key_event.h"
#include "platform/key_poster.h"
#include "platform/keyboard_state.h"

namespace quillo::simulated {

// A key of the user goes to the HID route and becomes an event; an event, the user's or a posted
// one, goes to the taps, then to the owner of its chord, and then to the program in front, where
// the monitors watch it. Secure input keeps all of it for the program in front alone, and drops
// posted events.
class SimulatedKeyboard final : public KeyPoster, public KeyboardState {
 public:
  struct Routes {
    SwallowingEventTaps& taps;
    RegisteredHotKeys& hotKeys;
    RoutedEventMonitors& monitors;
    RoutedHIDKeyboards& hid;
  };

  SimulatedKeyboard(Timeline& timeline, SimulatedWorkspace& workspace, Routes routes)
      : timeline_(timeline), workspace_(workspace), routes_(routes) {}

  // Command with key code 9 pastes and with 8 copies, in whatever layout.
  Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                      std::uint64_t flags, std::int64_t userData) override;
  std::uint64_t modifierFlags() const override;
  bool isSecureEventInputEnabled() const override { return isSecureInput_; }

  // --- Driver ---

  // A key of the user, now. A key that is down already, or up, stays so.
  void press(Key key);
  void release(Key key);
  // Presses the keys in order now and releases them in reverse order after `held`.
  void tap(const std::vector<Key>& chord, Duration held = std::chrono::milliseconds(30));

  void setLayout(KeyboardLayout layout) { layout_ = layout; }
  KeyboardLayout layout() const { return layout_; }
  void setSecureInput(bool enabled) { isSecureInput_ = enabled; }
  // Keys repeat `first` after their press and then every `interval`; 0 turns it off.
  void setAutorepeat(Duration first, Duration interval);
  // No posted event can be made from now on.
  void refusePosts(bool refused) { refusesPosts_ = refused; }

  struct Posted {
    std::int64_t keyCode = 0;
    KeyDirection direction = KeyDirection::down;
    std::uint64_t flags = 0;
    std::int64_t userData = 0;
    MonotonicTime time;
  };
  const std::vector<Posted>& posted() const { return posted_; }
  // Keys that the user holds, and posted keys that did not go up again.
  const std::set<Key>& keysDown() const { return down_; }
  const std::set<std::int64_t>& postedKeysDown() const { return postedDown_; }

 private:
  KeyEvent eventFor(std::int64_t keyCode, KeyDirection direction) const;
  void change(Key key, KeyDirection direction);
  void updateFlags();
  void startRepeating(Key key);
  void repeat(Key key);

  void send(KeyEvent event);
  void moveOn();
  void deliver(const KeyEvent& event);

  Timeline& timeline_;
  SimulatedWorkspace& workspace_;
  Routes routes_;
  KeyboardLayout layout_ = KeyboardLayout::us;
  std::set<Key> down_;
  std::set<std::int64_t> postedDown_;
  std::uint64_t flags_ = 0;
  bool capsLockOn_ = false;
  bool numLockOn_ = false;
  bool isSecureInput_ = false;
  bool refusesPosts_ = false;
  Duration firstRepeat_ = std::chrono::milliseconds(500);
  Duration repeatInterval_ = std::chrono::milliseconds(40);
  Timeline::Plan nextRepeat_;
  std::vector<Posted> posted_;
  // Events keep their order while the taps think about the first.
  std::deque<KeyEvent> travelling_;
  bool tapsAreThinking_ = false;
};

}  // namespace quillo::simulated
