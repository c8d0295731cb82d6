// How long one application may keep the main thread waiting.
#pragma once

#include <algorithm>
#include <chrono>

#include "base/time.h"

namespace quillo::linux_host {

// An application that is slow to answer may cost 0.4 seconds within 5; one that does not answer at
// all is left alone for 5 seconds. One thread.
class ResponseBudget {
 public:
  static constexpr Duration window = std::chrono::seconds(5);
  static constexpr Duration allowance = std::chrono::milliseconds(400);
  // An answer within this time is no slow one.
  static constexpr Duration prompt = std::chrono::milliseconds(50);
  // An application that has answered within this time is taken to be alive.
  static constexpr Duration trust = std::chrono::seconds(1);

  // Zero: it is not to be asked now.
  Duration left(MonotonicTime now) const {
    if (now < closedUntil_) return Duration::zero();
    if (now - windowStart_ >= window) return allowance;
    return std::max(Duration::zero(), allowance - spent_);
  }
  bool isTrusted(MonotonicTime now) const { return now - lastAnswer_ < trust; }

  void answered(MonotonicTime asked, MonotonicTime now) {
    if (now - asked > prompt) spend(asked, now);
    lastAnswer_ = now;
  }
  void ranOut(MonotonicTime asked, MonotonicTime now) {
    spend(asked, now);
    closedUntil_ = now + window;
    lastAnswer_ = MonotonicTime::distantPast();
  }

 private:
  void spend(MonotonicTime asked, MonotonicTime now) {
    if (asked - windowStart_ >= window) {
      windowStart_ = asked;
      spent_ = Duration::zero();
    }
    spent_ += now - asked;
  }

  MonotonicTime windowStart_ = MonotonicTime::distantPast();
  MonotonicTime closedUntil_ = MonotonicTime::distantPast();
  MonotonicTime lastAnswer_ = MonotonicTime::distantPast();
  Duration spent_{};
};

}  // namespace quillo::linux_host
