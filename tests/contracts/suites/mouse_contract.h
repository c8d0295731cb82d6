// What every desktop's mouse keeps.
#pragma once

#include <gmock/gmock.h>

#include "contracts/support/contract_host.h"
#include "platform/mouse_monitors.h"
#include "platform/pointer.h"

namespace quillo::contracts {

// A desktop with a mouse over another program's window, which fills the screen but for a panel of
// this program.
class MouseHost : public ContractHost {
 public:
  virtual MouseMonitors& mouseMonitors() = 0;
  virtual Pointer& pointer() = 0;

  // The user's.
  virtual void moveTo(Point place) = 0;
  virtual void press(std::uint32_t button) = 0;
  virtual void release(std::uint32_t button) = 0;
  virtual void turnWheel() = 0;
  virtual Point placeOnPanel() = 0;
};

using MouseContract = PortContract<MouseHost>;

TEST_P(MouseContract, MonitorsSeeWhatBeginsInOtherPrograms) {
  using enum MouseEvent::Type;
  std::vector<MouseEvent::Type> seen;
  std::vector<MouseEvent::Type> drags;
  auto monitor = host().mouseMonitors().addGlobalMonitor(
      {leftDown, leftUp, rightDown, scrollWheel},
      [&](const MouseEvent& event) { seen.push_back(event.type); });
  auto dragMonitor = host().mouseMonitors().addGlobalMonitor(
      {leftDragged}, [&](const MouseEvent& event) { drags.push_back(event.type); });
  ASSERT_TRUE(monitor && dragMonitor);
  const auto expectSeen = [&](std::vector<MouseEvent::Type> types) {
    EXPECT_TRUE(host().runUntil([&] { return seen.size() >= types.size(); }));
    EXPECT_EQ(std::exchange(seen, {}), types);
  };
  const auto click = [&](Point place, std::uint32_t button) {
    host().moveTo(place);
    host().press(button);
    host().release(button);
  };

  host().moveTo({300, 420});
  EXPECT_EQ(host().pointer().location(), (Point{300, 420}));
  host().press(mouse_buttons::left);
  expectSeen({leftDown});
  EXPECT_EQ(host().pointer().pressedButtons(), mouse_buttons::left);
  EXPECT_TRUE(drags.empty()) << "nothing was dragged yet";
  host().moveTo({340, 420});
  EXPECT_TRUE(host().runUntil([&] { return !drags.empty(); }));
  host().release(mouse_buttons::left);
  expectSeen({leftUp});
  EXPECT_EQ(host().pointer().pressedButtons(), 0u);
  drags.clear();
  click({310, 420}, mouse_buttons::right);
  host().turnWheel();
  expectSeen({rightDown, scrollWheel});

  host().moveTo(host().placeOnPanel());
  host().turnWheel();
  host().press(mouse_buttons::left);
  host().moveTo({300, 420});
  host().release(mouse_buttons::left);
  click({300, 420}, mouse_buttons::left);
  expectSeen({leftDown, leftUp});
  EXPECT_TRUE(drags.empty()) << "what began on the panel was seen";

  monitor.reset();
  host().press(mouse_buttons::left);
  host().moveTo({320, 420});
  host().release(mouse_buttons::left);
  EXPECT_TRUE(host().runUntil([&] { return !drags.empty(); }));
  EXPECT_TRUE(seen.empty()) << "a dropped monitor still sees";
}

}  // namespace quillo::contracts
