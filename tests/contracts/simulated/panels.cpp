// The simulated desktop under the suites of panels, screens and the status item.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/panels_contract.h"
#include "contracts/suites/status_item_contract.h"

namespace quillo::contracts {
namespace {

class SimulatedPanelsHost final : public SimulatedHost<PanelsHost> {
 public:
  Panels& panels() override { return desktop_.panels(); }
  Screens& screens() override { return desktop_.screens(); }
  bool programHasFocus() override { return desktop_.workspace().frontmost() == &program_; }
  int clicksOfProgram() override { return clicks_; }
  int keysOfProgram() override { return keys_; }
  void click(Point place) override {
    if (!desktop_.panels().takesClickAt(place) || !desktop_.panels().click("Press")) ++clicks_;
  }
  void press(KeyEquivalent key) override {
    if (programHasFocus()) {
      ++keys_;
    } else {
      desktop_.panels().press(key);
    }
  }

 private:
  simulated::SimulatedApplication& program_ =
      desktop_.workspace().launch({"org.example.below", "Below"});
  int clicks_ = 0;
  int keys_ = 0;
};

class SimulatedStatusItemHost final : public SimulatedHost<StatusItemHost> {
 public:
  simulated::VirtualStatusItem& statusItem() override { return desktop_.statusItem(); }
  bool isShown() override { return statusItem().isShown(); }
  std::string description() override { return statusItem().description().english(); }
  std::vector<std::string> menu() override {
    std::vector<std::string> titles;
    list(statusItem().menu(), "", titles);
    return titles;
  }
  void choose(const std::string& title) override {
    if (!statusItem().choose(title)) statusItem().choose("Profile/" + title);
  }

 private:
  static void list(const std::vector<MenuItem>& items, const std::string& indent,
                   std::vector<std::string>& titles) {
    for (const MenuItem& item : items) {
      std::string title = item.isSeparator() ? "-" : item.title.english();
      if (item.isChecked) title = "*" + title;
      if (!item.isEnabled) title = "(" + title + ")";
      titles.push_back(indent + title);
      list(item.submenu, indent + "  ", titles);
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Simulated, PanelsContract, hostedBy<SimulatedPanelsHost>());
INSTANTIATE_TEST_SUITE_P(Simulated, StatusItemContract, hostedBy<SimulatedStatusItemHost>());

}  // namespace
}  // namespace quillo::contracts
