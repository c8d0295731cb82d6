// Durations and points in time.
#pragma once

#include <chrono>
#include <cstdint>

namespace quillo {

using Duration = std::chrono::nanoseconds;

// Time since an arbitrary start that never jumps; for waits and debounces.
struct MonotonicTime {
  Duration sinceStart{};

  friend auto operator<=>(const MonotonicTime&, const MonotonicTime&) = default;
  friend Duration operator-(MonotonicTime a, MonotonicTime b) {
    return a.sinceStart - b.sinceStart;
  }
  friend MonotonicTime operator+(MonotonicTime t, Duration d) { return {t.sinceStart + d}; }
  // Earlier than every time that a clock tells: "never happened yet".
  static constexpr MonotonicTime distantPast() { return {-std::chrono::hours(24 * 365 * 100)}; }
};

// Wall-clock time, UTC.
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

constexpr Duration fromSeconds(double seconds) {
  return Duration(static_cast<std::int64_t>(seconds * 1e9));
}
constexpr double toSeconds(Duration d) {
  return static_cast<double>(d.count()) / 1e9;
}
constexpr double secondsSince1970(Date date) {
  return toSeconds(date.time_since_epoch());
}
constexpr Date dateFromSecondsSince1970(double seconds) {
  return Date(fromSeconds(seconds));
}

}  // namespace quillo
