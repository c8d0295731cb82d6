// What the user does with the mouse in other applications.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quillo {

struct MouseEvent {
  // Left and right as the user has arranged them.
  enum class Type { leftDown, leftUp, leftDragged, rightDown, scrollWheel };
  Type type = Type::leftDown;
  // The field that posted events carry; 0 for the user's.
  std::int64_t userData = 0;
};

// Main thread.
class MouseMonitors {
 public:
  virtual ~MouseMonitors() = default;
  // Events of these types that go to other applications: what begins on a panel or a window of this
  // program is not seen, to its end. Several drags or scrolls in a row may be told as one. Nothing
  // when the system refuses. Dropping ends it.
  [[nodiscard]] virtual std::shared_ptr<void> addGlobalMonitor(
      std::vector<MouseEvent::Type> types, std::function<void(const MouseEvent&)> seen) = 0;
};

}  // namespace quillo
