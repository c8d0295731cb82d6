#include "hosts/linux/posix/system_clock.h"

#include <chrono>
#include <ctime>

namespace quillo::linux_host {
namespace {

// More days than any calendar rule asks for; the fields of std::tm are ints.
constexpr std::int64_t longestWayBack = 1'000'000;

}  // namespace

Date SystemClock::now() const {
  return std::chrono::system_clock::now();
}

Date SystemClock::daysBefore(Date date, std::int64_t days) const {
  const auto wholeSeconds = std::chrono::floor<std::chrono::seconds>(date);
  const std::time_t then = wholeSeconds.time_since_epoch().count();
  std::tm local{};
  if (days < -longestWayBack || days > longestWayBack || !localtime_r(&then, &local))
    return date - std::chrono::days(days);
  local.tm_mday -= static_cast<int>(days);
  // The other day may have another offset from UTC: mktime finds the one that holds then.
  local.tm_isdst = -1;
  return Date(std::chrono::seconds(std::mktime(&local))) + (date - wholeSeconds);
}

}  // namespace quillo::linux_host
