// The keys as the user holds them, and what each way of seeing them makes of it.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "simulation/world/trace.h"

namespace quillo::sim {

// A model of its own of what is bound and of who sees it: it reads the trace alone.
class KeyboardModel {
 public:
  void see(const Event& event);

  const events::Shortcuts& bound() const { return bound_; }
  bool isHoldMode() const { return bound_.activationMode == "hold"; }
  // One press of modifiers toggles.
  bool isTapMode() const;
  bool areAllUp() const { return down_.empty(); }
  bool isDown(std::int64_t keyCode) const { return down_.contains(keyCode); }
  // The shortcut that is made of modifiers is held, as the flags of events tell it, or as the
  // keyboards do. Right Option is known to the flags by its own events alone: with both Options
  // down it counts as held until its next event, which the rules accept.
  bool isHeldByFlags() const { return isHeldByFlags_; }
  bool isHeldByKeyboards() const { return isHeldByKeyboards_; }
  bool isHeld() const { return isHeldByFlags_ || isHeldByKeyboards_; }
  // A key went down that makes a chord with the modifiers.
  bool pressesToggleChord(const Event& event) const;
  bool pressesCycleChord(const Event& event) const;

 private:
  void bind(const events::Shortcuts& shortcuts);
  void move(const events::UserKey& key);
  void judge(std::int64_t keyCode, std::uint64_t flags);
  std::string shortcut() const;
  bool holdsByFlags(std::uint64_t flags) const;
  bool holdsByKeyboards() const;
  std::uint64_t flags() const;

  events::Shortcuts bound_;
  std::uint64_t cycleFlags_ = 0;
  std::string cycleTypes_;
  std::set<std::int64_t> down_;
  bool isRightOptionFlagged_ = false;
  bool isHeldByFlags_ = false;
  bool isHeldByKeyboards_ = false;
};

}  // namespace quillo::sim
