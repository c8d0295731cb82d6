// The screens of the desktop.
#pragma once

#include <optional>
#include <vector>

#include "platform/geometry.h"

namespace quillo {

struct Screen {
  Rect frame;
  Rect visibleFrame;  // without the desktop's own bars

  friend bool operator==(const Screen&, const Screen&) = default;
};

// Main thread.
class Screens {
 public:
  virtual ~Screens() = default;
  // As they are now, the primary one first. May be none.
  virtual std::vector<Screen> screens() const = 0;
  // The one where the user types; nothing when that cannot be told.
  virtual std::optional<Screen> mainScreen() const = 0;
};

}  // namespace quillo
