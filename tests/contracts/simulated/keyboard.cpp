// The simulated keyboard keeps the contracts of the ports that see and press keys.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/event_monitors_contract.h"
#include "contracts/suites/hid_keyboards_contract.h"
#include "contracts/suites/hot_keys_contract.h"
#include "contracts/suites/key_poster_contract.h"

namespace quillo::contracts {
namespace {

using simulated::SimulatedApplication;

class SimulatedKeyboardHost final : public SimulatedHost<KeyboardHost> {
 public:
  KeyPoster& keyPoster() override { return desktop_.keyPoster(); }
  KeyboardState& keyboardState() override { return desktop_.keyboardState(); }
  HotKeys& hotKeys() override { return desktop_.hotKeys(); }
  EventMonitors& eventMonitors() override { return desktop_.eventMonitors(); }
  HIDKeyboards& hidKeyboards() override { return desktop_.hidKeyboards(); }
  Pasteboard& pasteboard() override { return desktop_.pasteboard(); }

  void press(Key key) override { desktop_.keyboard().press(key); }
  void release(Key key) override { desktop_.keyboard().release(key); }
  std::string editorText() override { return program_.editor().text(); }
  void selectInEditor(std::string_view text) override {
    program_.editor().setText(text);
    program_.editor().selectAll();
  }
  void setSecureInput(bool enabled) override { desktop_.keyboard().setSecureInput(enabled); }
  std::shared_ptr<void> takeByAnotherProgram(Key key, std::uint32_t modifiers) override {
    return desktop_.hotKeys().takeByAnotherProgram(static_cast<std::uint32_t>(key), modifiers);
  }
  void focusOwnWindow() override { desktop_.workspace().focus(desktop_.workspace().self()); }
  void focusEditor() override { desktop_.workspace().focus(program_); }
  int ownKeyDowns() override {
    const auto& keys = desktop_.workspace().self().receivedKeys();
    return static_cast<int>(std::ranges::count(keys, KeyEvent::Type::keyDown, &KeyEvent::type));
  }

 private:
  SimulatedApplication& program_ = desktop_.workspace().launch({"com.example.editor", "Editor"});
};
INSTANTIATE_TEST_SUITE_P(Simulated, EventMonitorsContract, hostedBy<SimulatedKeyboardHost>());
INSTANTIATE_TEST_SUITE_P(Simulated, HIDKeyboardsContract, hostedBy<SimulatedKeyboardHost>());
INSTANTIATE_TEST_SUITE_P(Simulated, HotKeysContract, hostedBy<SimulatedKeyboardHost>());
INSTANTIATE_TEST_SUITE_P(Simulated, KeyPosterContract, hostedBy<SimulatedKeyboardHost>());

}  // namespace
}  // namespace quillo::contracts
