// Keys before the focused application has them.
#pragma once

#include <functional>
#include <memory>

#include "base/result.h"
#include "platform/key_event.h"

namespace quillo {

enum class TapInterruption { timeout, userInput };

enum class EventTapFailure {
  notOffered,  // the desktop has no such taps
  notAllowed,  // by the user
};

// Main thread; no call blocks. Sees key-downs before the focused application and may swallow them.
class EventTaps {
 public:
  struct Tap {
    virtual ~Tap() = default;  // ends the tap
    // The system may switch a tap off; this switches it on again.
    virtual void enable() = 0;
  };

  virtual ~EventTaps() = default;
  [[nodiscard]] virtual Result<std::unique_ptr<Tap>, EventTapFailure> createKeyDownTap(
      std::function<TapVerdict(const KeyEvent&)> seen,
      std::function<void(TapInterruption)> interrupted) = 0;
};

}  // namespace quillo
