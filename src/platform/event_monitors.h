// Keys as the programs get them.
#pragma once

#include <functional>
#include <memory>

#include "base/result.h"
#include "platform/key_event.h"

namespace quillo {

enum class EventMonitorFailure { refused };  // by the system

// Main thread; no call blocks.
class EventMonitors {
 public:
  virtual ~EventMonitors() = default;
  // Events that go to other applications, until the result is dropped.
  [[nodiscard]] virtual Result<std::shared_ptr<void>, EventMonitorFailure> addGlobalMonitor(
      KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) = 0;
  // Events that go to this program, which may be swallowed, until the result is dropped.
  [[nodiscard]] virtual Result<std::shared_ptr<void>, EventMonitorFailure> addLocalMonitor(
      KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) = 0;
};

}  // namespace quillo
