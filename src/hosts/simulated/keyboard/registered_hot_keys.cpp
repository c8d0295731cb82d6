#include "hosts/simulated/keyboard/registered_hot_keys.h"

#include <algorithm>

namespace quillo::simulated {

std::shared_ptr<RegisteredHotKeys::Registered> RegisteredHotKeys::add(
    Chord chord, std::function<void()> pressed) {
  std::erase_if(registered_, [](const auto& old) { return old.expired(); });
  const bool isTaken = std::any_of(registered_.begin(), registered_.end(),
                                   [&](const auto& other) { return other.lock()->chord == chord; });
  if (isTaken) return nullptr;
  auto added = std::make_shared<Registered>(Registered{chord, std::move(pressed)});
  registered_.push_back(added);
  return added;
}

Result<std::shared_ptr<void>, HotKeyError> RegisteredHotKeys::registerHotKey(
    std::uint32_t keyCode, std::uint32_t modifiers, std::function<void()> pressed) {
  if (route_.isRefused()) return HotKeyError::alreadyTaken;
  auto registered = add({keyCode, eventFlagsFrom(modifiers)}, std::move(pressed));
  if (!registered) return HotKeyError::alreadyTaken;
  return registered;
}

std::shared_ptr<void> RegisteredHotKeys::takeByAnotherProgram(std::uint32_t keyCode,
                                                              std::uint32_t modifiers) {
  return add({keyCode, eventFlagsFrom(modifiers)}, nullptr);
}

bool RegisteredHotKeys::claim(const KeyEvent& event) {
  if (event.type == KeyEvent::Type::keyUp) return claimedKeys_.erase(event.keyCode) > 0;
  if (event.type != KeyEvent::Type::keyDown) return false;
  if (event.isAutorepeat) return claimedKeys_.contains(event.keyCode);
  const Chord chord(event.keyCode, event.flags & event_flags::chordMask);
  bool isClaimed = false;
  for (const auto& weak : registered_) {
    const auto registered = weak.lock();
    if (!registered || registered->chord != chord) continue;
    isClaimed = true;
    if (!registered->pressed) continue;
    route_.carry([weak] {
      if (const auto alive = weak.lock()) alive->pressed();
    });
  }
  if (isClaimed) claimedKeys_.insert(event.keyCode);
  return isClaimed;
}

std::size_t RegisteredHotKeys::registrationCount() const {
  return static_cast<std::size_t>(
      std::count_if(registered_.begin(), registered_.end(), [](const auto& weak) {
        const auto alive = weak.lock();
        return alive && alive->pressed;
      }));
}

}  // namespace quillo::simulated
