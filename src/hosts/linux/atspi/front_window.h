// What accessibility asks of the window system.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/time.h"

namespace quillo::linux_host {

struct DesktopWindow {
  std::uint64_t identifier = 0;
  std::int32_t processIdentifier = 0;  // 0 when nobody tells
  std::int32_t x = 0;                  // of its contents, on the screen
  std::int32_t y = 0;
  friend bool operator==(const DesktopWindow&, const DesktopWindow&) = default;
};

// Main thread. What was told of the window in front and of the user takes no time; a place and a
// title are asked for.
class DesktopWindows {
 public:
  virtual ~DesktopWindows() = default;

  // The one that the window manager calls active, of another program or this one.
  virtual std::optional<DesktopWindow> front() = 0;
  // The topmost at a place of the screen.
  virtual std::optional<DesktopWindow> at(std::int32_t x, std::int32_t y) = 0;
  virtual std::string title(const DesktopWindow& window) = 0;
  // When the user last did anything that may have moved what is shown; now, while that goes on.
  virtual MonotonicTime lastInput() = 0;
};

}  // namespace quillo::linux_host
