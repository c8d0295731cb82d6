// The simulated desktop under the suite of windows.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/windows_contract.h"

namespace quillo::contracts {
namespace {

class SimulatedWindowsHost final : public SimulatedHost<WindowsHost> {
 public:
  Windows& windows() override { return desktop_.windows(); }
  Panels& panels() override { return desktop_.panels(); }
  Application& application() override { return desktop_.application(); }
  bool programHasFocus() override { return desktop_.workspace().frontmost() == &program_; }
  void press(KeyEquivalent key) override { desktop_.windows().press(key); }
  void clickCloseButton() override { desktop_.windows().visible().front()->close(); }
  void switchToProgram() override { desktop_.workspace().focus(program_); }
  void settle() override {}

 private:
  simulated::SimulatedApplication& program_ =
      desktop_.workspace().launch({"org.example.below", "Below"});
};

INSTANTIATE_TEST_SUITE_P(Simulated, WindowsContract, hostedBy<SimulatedWindowsHost>());

}  // namespace
}  // namespace quillo::contracts
