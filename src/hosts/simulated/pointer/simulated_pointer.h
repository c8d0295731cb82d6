// The one mouse of the desktop, and what applications do with it.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "hosts/simulated/desktop/simulated_workspace.h"
#include "hosts/simulated/keyboard/key_route.h"
#include "hosts/simulated/screen/virtual_panels.h"
#include "hosts/simulated/screen/virtual_screens.h"
#include "platform/mouse_monitors.h"
#include "platform/pointer.h"

namespace quillo::simulated {

// What begins on a panel of the program belongs to the panel. Elsewhere a press brings the program
// there to the front and puts its caret there; what is dragged over is selected.
class SimulatedPointer final : public Pointer, public MouseMonitors {
 public:
  SimulatedPointer(KeyRoute route, SimulatedWorkspace& workspace, const VirtualScreens& screens,
                   VirtualPanels& panels)
      : route_(route), workspace_(workspace), screens_(screens), panels_(panels) {}

  Point location() const override { return location_; }
  std::uint32_t pressedButtons() const override { return pressed_; }
  [[nodiscard]] std::shared_ptr<void> addGlobalMonitor(
      std::vector<MouseEvent::Type> types, std::function<void(const MouseEvent&)> seen) override;

  // --- Driver ---

  void moveTo(Point place);
  // Bits of mouse_buttons. A button that is down already, or up, stays so.
  void press(std::uint32_t button);
  void release(std::uint32_t button);
  void turnWheel();
  KeyRoute& route() { return route_; }
  std::size_t monitorCount() const;

 private:
  struct Monitor {
    std::set<MouseEvent::Type> types;
    std::function<void(const MouseEvent&)> seen;
  };
  // A text in which the left button went down, and where.
  struct Anchor {
    AccessibilityElement element;
    std::int64_t place = 0;
  };

  AccessibilityPoint topLeftLocation() const;
  void tell(MouseEvent::Type type);
  void pressInApplication();
  void selectFromAnchor() const;

  KeyRoute route_;
  SimulatedWorkspace& workspace_;
  const VirtualScreens& screens_;
  VirtualPanels& panels_;
  Point location_{720, 450};
  std::uint32_t pressed_ = 0;
  bool beganOnPanel_ = false;
  std::optional<Anchor> anchor_;
  std::vector<std::weak_ptr<Monitor>> monitors_;
};

}  // namespace quillo::simulated
