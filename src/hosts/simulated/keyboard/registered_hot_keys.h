// Chords that a program owns wherever the focus is.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "hosts/simulated/keyboard/key_route.h"
#include "platform/hot_keys.h"
#include "platform/key_event.h"

namespace quillo::simulated {

class RegisteredHotKeys final : public HotKeys {
 public:
  explicit RegisteredHotKeys(KeyRoute route) : route_(route) {}

  [[nodiscard]] Result<std::shared_ptr<void>, HotKeyError> registerHotKey(
      std::uint32_t keyCode, std::uint32_t modifiers, std::function<void()> pressed) override;

  // Whether a program owns the chord of `event`, so that nobody else sees it. Its owner is told of
  // a first press.
  bool claim(const KeyEvent& event);

  // --- Driver ---

  // Another program registers this chord, until the result is dropped; null when it is taken.
  [[nodiscard]] std::shared_ptr<void> takeByAnotherProgram(std::uint32_t keyCode,
                                                           std::uint32_t modifiers);
  KeyRoute& route() { return route_; }
  std::size_t registrationCount() const;

 private:
  using Chord = std::pair<std::int64_t, std::uint64_t>;  // key code and chord flags
  struct Registered {
    Chord chord;
    std::function<void()> pressed;  // empty for another program's
  };

  // Null when the chord is taken.
  std::shared_ptr<Registered> add(Chord chord, std::function<void()> pressed);

  KeyRoute route_;
  std::vector<std::weak_ptr<Registered>> registered_;
  std::set<std::int64_t> claimedKeys_;
};

}  // namespace quillo::simulated
