// Keys that the program presses for the user.
#pragma once

#include <cstdint>

#include "base/result.h"
#include "platform/key_event.h"

namespace quillo {

enum class KeyPosterFailure {
  noSuchKey,    // on this keyboard, or no such chord for the focused application
  unavailable,  // the desktop takes no posted keys now
};

// Main thread. Keys at the level of the hardware: every monitor sees them.
class KeyPoster {
 public:
  virtual ~KeyPoster() = default;
  // Blocks for some round trips to the window system. Nothing was posted when it fails.
  virtual Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                              std::uint64_t flags, std::int64_t userData) = 0;
};

}  // namespace quillo
