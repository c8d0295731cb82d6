// Copy and paste, as if the user pressed the keys.
#pragma once

#include <chrono>
#include <cstdint>

#include "base/task.h"
#include "base/time.h"
#include "platform/key_poster.h"

namespace quillo {

struct CommandShortcut {
  std::int64_t keyCode = 0;
  Duration hold{};            // how long the key stays down
  std::int64_t userData = 0;  // travels with each of its events
};

// Marks the events of the synthetic copy, so that our own monitors can pass over them.
inline constexpr std::int64_t syntheticCopyMarker = 5068849;

inline constexpr CommandShortcut copyShortcut{8, std::chrono::milliseconds(25),
                                              syntheticCopyMarker};
inline constexpr CommandShortcut pasteShortcut{9, std::chrono::milliseconds(20), 0};

// Presses Command and the key, holds them, and lets go; cancellation changes nothing. An event that
// cannot be made is left out. The keys are up when this ends, however it ends.
Task<> postCommandShortcut(KeyPoster& keyPoster, CommandShortcut shortcut);

}  // namespace quillo
