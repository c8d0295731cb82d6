#include "hosts/simulated/registered_hot_keys.h"

#include <algorithm>

namespace quillo::simulated {
namespace {

std::uint64_t flagsOf(std::uint32_t modifiers) {
  std::uint64_t flags = 0;
  if (modifiers & hot_key_modifiers::command) flags |= event_flags::command;
  if (modifiers & hot_key_modifiers::shift) flags |= event_flags::shift;
  if (modifiers & hot_key_modifiers::option) flags |= event_flags::option;
  if (modifiers & hot_key_modifiers::control) flags |= event_flags::control;
  return flags;
}

}  // namespace

HotKeys::Registration RegisteredHotKeys::registerHotKey(std::uint32_t keyCode,
                                                        std::uint32_t modifiers,
                                                        std::function<void()> pressed) {
  const Chord chord(keyCode, flagsOf(modifiers));
  std::erase_if(registered_, [](const auto& old) { return old.expired(); });
  const bool isTaken = foreign_.contains(chord) || route_.isRefused() ||
                       std::any_of(registered_.begin(), registered_.end(),
                                   [&](const auto& other) { return other.lock()->chord == chord; });
  if (isTaken) return {Status::alreadyTaken, nullptr};
  auto registered = std::make_shared<Registered>(Registered{chord, std::move(pressed)});
  registered_.push_back(registered);
  return {Status::success, std::move(registered)};
}

bool RegisteredHotKeys::claim(const KeyEvent& event) {
  if (event.type == KeyEvent::Type::keyUp) return claimedKeys_.erase(event.keyCode) > 0;
  if (event.type != KeyEvent::Type::keyDown) return false;
  if (event.isAutorepeat) return claimedKeys_.contains(event.keyCode);
  const Chord chord(event.keyCode, event.flags & event_flags::chordMask);
  bool isClaimed = foreign_.contains(chord);
  for (const auto& weak : registered_) {
    const auto registered = weak.lock();
    if (!registered || registered->chord != chord) continue;
    isClaimed = true;
    route_.carry([weak] {
      if (const auto alive = weak.lock()) alive->pressed();
    });
  }
  if (isClaimed) claimedKeys_.insert(event.keyCode);
  return isClaimed;
}

void RegisteredHotKeys::takeByAnotherProgram(std::uint32_t keyCode, std::uint32_t modifiers) {
  foreign_.emplace(keyCode, flagsOf(modifiers));
}

std::size_t RegisteredHotKeys::registrationCount() const {
  return static_cast<std::size_t>(std::count_if(registered_.begin(), registered_.end(),
                                                [](const auto& weak) { return !weak.expired(); }));
}

}  // namespace quillo::simulated
