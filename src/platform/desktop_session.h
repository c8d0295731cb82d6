// The desktop session in which this program runs.
#pragma once

#include <optional>

#include "base/words.h"

namespace quillo {

// Main thread. Stays the same while the program runs.
class DesktopSession {
 public:
  virtual ~DesktopSession() = default;
  // Where in this session shortcuts and pastes do not work, and what does, as one sentence for the
  // user. Nothing when they work everywhere.
  virtual std::optional<Words> limitation() const = 0;
};

}  // namespace quillo
