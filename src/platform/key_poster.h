// Keys that the program presses for the user.
#pragma once

#include <cstdint>

#include "platform/key_event.h"

namespace quillo {

// Main thread. Keys at the level of the hardware: every monitor sees them.
class KeyPoster {
 public:
  virtual ~KeyPoster() = default;
  // False when the event could not be made; nothing was posted then.
  virtual bool post(std::int64_t keyCode, KeyDirection direction, std::uint64_t flags,
                    std::int64_t userData) = 0;
};

}  // namespace quillo
