// Virtual time, and what happens in it outside the program.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "base/time.h"

namespace quillo::simulated {

// Happenings are what hardware, other programs and the network do: a key goes down, a buffer of
// sound is full, a reply arrives. They run at their time, also while the program's main thread is
// blocked in a call; those of one moment run in the order of their planning. Time stands still
// otherwise, however much is computed.
class Timeline {
 public:
  // Names a planned happening; a default one names none.
  struct Plan {
    MonotonicTime time;
    std::uint64_t sequence = 0;
    friend auto operator<=>(const Plan&, const Plan&) = default;
  };

  MonotonicTime now() const { return now_; }
  Plan after(Duration delay, std::function<void()> happen);
  // A happening that is over is ignored.
  void cancel(Plan plan) { planned_.erase(plan); }

  std::optional<MonotonicTime> nextTime() const;
  // Runs what is due now.
  void runDue();
  // Jumps to `time`, running what happens on the way.
  void passUntil(MonotonicTime time);
  // The running turn of the main thread blocks for `duration`.
  void block(Duration duration) { passUntil(now_ + duration); }

 private:
  MonotonicTime now_;
  std::map<Plan, std::function<void()>> planned_;
  std::uint64_t nextSequence_ = 1;
};

}  // namespace quillo::simulated
