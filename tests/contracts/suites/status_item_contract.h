// What every desktop's status item keeps.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "contracts/support/contract_host.h"
#include "platform/status_item.h"

namespace quillo::contracts {

// A desktop with a bar, as its user sees it.
class StatusItemHost : public ContractHost {
 public:
  virtual StatusItem& statusItem() = 0;
  virtual bool isShown() = 0;
  virtual std::string description() = 0;
  // The titles of the menu and, indented, of its submenus; "-" for a line between groups, "(x)" for
  // an item that cannot be chosen, "*x" for a checked one.
  virtual std::vector<std::string> menu() = 0;
  // By its title.
  virtual void choose(const std::string& title) = 0;
};

class StatusItemContract : public PortContract<StatusItemHost> {
 protected:
  MenuItem noting(std::string title) {
    return {.title = asItStands(title), .action = [this, title] { chosen_.push_back(title); }};
  }
  void expectMenu(const std::vector<std::string>& titles) {
    host().runUntil([&] { return host().menu() == titles; });
    EXPECT_EQ(host().menu(), titles);
  }
  void expectChosen(const std::vector<std::string>& titles) {
    host().runUntil([&] { return chosen_ == titles; });
    EXPECT_EQ(chosen_, titles);
  }

  std::vector<std::string> chosen_;
};

TEST_P(StatusItemContract, AppearsWithItsIconAndTellsWhatItMeans) {
  host().statusItem().setMenu({noting("Start")});
  EXPECT_FALSE(host().isShown());
  host().statusItem().setIcon("waveform.circle", words("At rest"));
  ASSERT_TRUE(host().runUntil([&] { return host().isShown(); }));
  EXPECT_EQ(host().description(), "At rest");
  expectMenu({"Start"});
  host().statusItem().setIcon("mic.circle.fill", words("Recording"));
  EXPECT_TRUE(host().runUntil([&] { return host().description() == "Recording"; }));
}

TEST_P(StatusItemContract, ShowsItsMenuAndDoesWhatIsChosen) {
  MenuItem disabled = noting("Retry");
  disabled.isEnabled = false;
  MenuItem checked = noting("Work & ada_l & co");
  checked.isChecked = true;
  host().statusItem().setIcon("waveform.circle", words("At rest"));
  host().statusItem().setMenu({noting("Start"),
                               disabled,
                               MenuItem::separator(),
                               {.title = words("Profile"), .submenu = {checked, noting("Home")}},
                               noting("Swap (⌃G)")});
  expectMenu({"Start", "(Retry)", "-", "Profile", "  *Work & ada_l & co", "  Home", "Swap (⌃G)"});
  host().choose("Start");
  expectChosen({"Start"});
  host().choose("Home");
  expectChosen({"Start", "Home"});

  // Another meaning in the same shape, and then another shape.
  MenuItem unchecked = noting("Work & ada_l & co");
  host().statusItem().setMenu(
      {noting("Stop"),
       noting("Retry"),
       MenuItem::separator(),
       {.title = words("Profile"), .submenu = {unchecked, noting("Garden")}},
       noting("Swap (⌃J)")});
  expectMenu({"Stop", "Retry", "-", "Profile", "  Work & ada_l & co", "  Garden", "Swap (⌃J)"});
  host().choose("Garden");
  expectChosen({"Start", "Home", "Garden"});
  host().statusItem().setMenu({noting("Quit")});
  expectMenu({"Quit"});
  host().choose("Quit");
  expectChosen({"Start", "Home", "Garden", "Quit"});
}

}  // namespace quillo::contracts
