// The simulated programs and the clipboard between them keep their contracts.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/accessibility_contract.h"
#include "contracts/suites/pasteboard_contract.h"
#include "contracts/suites/workspace_contract.h"

namespace quillo::contracts {
namespace {

using simulated::OfferedItem;
using simulated::SimulatedApplication;

class SimulatedWorkspaceHost final : public SimulatedHost<WorkspaceHost> {
 public:
  Workspace& workspace() override { return desktop_.workspace(); }
  std::int32_t launch(std::string_view name) override {
    SimulatedApplication& program =
        desktop_.workspace().launch({"com.example." + std::string(name), std::string(name)});
    applications_[program.process()] = &program;
    return program.process();
  }
  void focus(std::int32_t process) override {
    desktop_.workspace().focus(*applications_.at(process));
  }
  void quit(std::int32_t process) override {
    desktop_.workspace().quit(*applications_.at(process));
  }

 private:
  std::map<std::int32_t, SimulatedApplication*> applications_;
};
INSTANTIATE_TEST_SUITE_P(Simulated, WorkspaceContract, hostedBy<SimulatedWorkspaceHost>());

class SimulatedPasteboard final : public SimulatedHost<PasteboardHost> {
 public:
  Pasteboard& pasteboard() override { return desktop_.pasteboard(); }
  // The other program promises everything.
  void copyElsewhere(PasteboardItem item, OwnerManner manner) override {
    OfferedItem offered;
    for (auto& [type, bytes] : item.representations)
      offered.push_back({.type = type, .bytes = bytes, .isPromised = true});
    desktop_.pasteboard().copyItems({offered}, other_.process());
    if (manner == OwnerManner::slow)
      desktop_.pasteboard().slowOwner(std::chrono::milliseconds(200));
    if (manner == OwnerManner::late)
      desktop_.pasteboard().slowOwner(std::chrono::milliseconds(1200));
    if (manner == OwnerManner::hung) desktop_.pasteboard().hangOwner();
  }
  void endOtherProgram() override { desktop_.workspace().quit(other_); }
  bool isMarkedAsPassing() override { return desktop_.pasteboard().isLent(); }
  std::optional<Bytes> readElsewhere(std::string_view type) override {
    for (const PasteboardItem& item : desktop_.pasteboard().items()) {
      for (const auto& [offered, bytes] : item.representations) {
        if (offered == type) return bytes;
      }
    }
    return std::nullopt;
  }

 private:
  SimulatedApplication& other_ = desktop_.workspace().launch({"com.example.other", "Other"});
};
INSTANTIATE_TEST_SUITE_P(Simulated, PasteboardContract, hostedBy<SimulatedPasteboard>());

class SimulatedAccessibilityHost final : public SimulatedHost<AccessibilityHost> {
 public:
  Accessibility& accessibility() override { return desktop_.accessibility(); }
  std::int32_t launchEditor(std::string_view text) override {
    program_ = &desktop_.workspace().launch({"com.example.letter", "letter"});
    program_->editor().setText(text);
    return program_->process();
  }
  void typePassword(std::string_view password) override {
    simulated::ApplicationTree& tree = program_->tree();
    tree.focus(&tree.mainWindow()->add({.role = "AXTextField",
                                        .subrole = "AXSecureTextField",
                                        .frame = {{100, 785}, {300, 24}},
                                        .editor = std::make_shared<simulated::Editor>(),
                                        .exposure = simulated::TextExposure::secret}));
    program_->editor().insert(password);
  }
  void hang() override { program_->tree().isHung = true; }
  void goOn() override { program_->tree().isHung = false; }
  void quit() override { desktop_.workspace().quit(*program_); }

 private:
  SimulatedApplication* program_ = nullptr;
};
INSTANTIATE_TEST_SUITE_P(Simulated, AccessibilityContract, hostedBy<SimulatedAccessibilityHost>());

}  // namespace
}  // namespace quillo::contracts
