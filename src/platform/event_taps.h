// Keys before the focused application has them.
#pragma once

#include <functional>
#include <memory>

#include "platform/key_event.h"

namespace quillo {

enum class TapInterruption { timeout, userInput };

// Main thread. Sees key-downs before the focused application and may swallow them.
class EventTaps {
 public:
  struct Tap {
    virtual ~Tap() = default;  // ends the tap
    // The system may switch a tap off; this switches it on again.
    virtual void enable() = 0;
  };

  virtual ~EventTaps() = default;
  // Nothing when the desktop offers no such tap or the user has not allowed it.
  [[nodiscard]] virtual std::unique_ptr<Tap> createKeyDownTap(
      std::function<TapVerdict(const KeyEvent&)> seen,
      std::function<void(TapInterruption)> interrupted) = 0;
};

}  // namespace quillo
