// The simulated mouse keeps the contract, and selects text as applications do.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/mouse_contract.h"
#include "contracts/support/test_content.h"

namespace quillo::contracts {
namespace {

class SimulatedMouseHost final : public SimulatedHost<MouseHost> {
 public:
  SimulatedMouseHost() {
    panel_->setFrameOrigin({600, 200});
    panel_->orderFrontRegardless();
  }
  MouseMonitors& mouseMonitors() override { return desktop_.mouseMonitors(); }
  Pointer& pointer() override { return desktop_.pointer(); }
  void moveTo(Point place) override { desktop_.pointer().moveTo(place); }
  void press(std::uint32_t button) override { desktop_.pointer().press(button); }
  void release(std::uint32_t button) override { desktop_.pointer().release(button); }
  void turnWheel() override { desktop_.pointer().turnWheel(); }
  Point placeOnPanel() override { return {610, 210}; }

 private:
  simulated::SimulatedApplication& application_ =
      desktop_.workspace().launch({"com.example.editor", "Editor"});
  TestContent content_;
  std::unique_ptr<Panel> panel_ = desktop_.panels().make({{100, 50}}, content_);
};
INSTANTIATE_TEST_SUITE_P(Simulated, MouseContract, hostedBy<SimulatedMouseHost>());

}  // namespace
}  // namespace quillo::contracts
