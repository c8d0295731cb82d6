// Keys as the programs get them.
#pragma once

#include <functional>
#include <memory>

#include "platform/key_event.h"

namespace quillo {

// Main thread.
class EventMonitors {
 public:
  virtual ~EventMonitors() = default;
  // Events that go to other applications; nothing when the system refuses. Dropping ends it.
  [[nodiscard]] virtual std::shared_ptr<void> addGlobalMonitor(
      KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) = 0;
  // Events that go to this program, which may be swallowed.
  [[nodiscard]] virtual std::shared_ptr<void> addLocalMonitor(
      KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) = 0;
};

}  // namespace quillo
