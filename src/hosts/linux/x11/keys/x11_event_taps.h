// Event taps, which X11 does not have.
#pragma once

#include "platform/event_taps.h"
#include "platform/key_event.h"

namespace quillo::linux_host {

// No program may look at every key before the focused application and swallow some: the tap is
// declined, and registered hot keys serve.
class X11EventTaps final : public EventTaps {
 public:
  Result<std::unique_ptr<Tap>, EventTapFailure> createKeyDownTap(
      std::function<TapVerdict(const KeyEvent&)>, std::function<void(TapInterruption)>) override {
    return EventTapFailure::notOffered;
  }
};

}  // namespace quillo::linux_host
