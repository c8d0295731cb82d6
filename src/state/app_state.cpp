#include "state/app_state.h"

#include <utility>

#include "state/key_labels.h"

namespace quillo {
namespace {

// By itself a state would be taken for the group that is made of it.
SettingRegistry& registryOf(SettingRegistry& state) {
  return state;
}

}  // namespace

MacAppState::MacAppState(MainThread& mainThread, UserDefaults& defaults, Clock& clock,
                         Random& random, Machine& machine, LoginItem& loginItem,
                         Application& application, Log& log)
    : SettingRegistry(defaults),
      AccountState(registryOf(*this), mainThread, clock, random, log),
      WritingSettings(registryOf(*this), machine, random),
      InsertionSettings(registryOf(*this)),
      ShortcutSettings(registryOf(*this)),
      RecordingSettings(registryOf(*this)),
      HistorySettings(registryOf(*this)),
      AppearanceSettings(registryOf(*this), loginItem, application, log),
      BubbleSettings(registryOf(*this)),
      mainThread_(mainThread) {
  const auto registerAgain = [this](std::int64_t) { registerCycleHotKey(); };
  ownEffects_.push_back(cycleHotKeyKeyCode.observe(registerAgain));
  ownEffects_.push_back(cycleHotKeyModifiers.observe(registerAgain));
}

void MacAppState::registerCycleHotKey() {
  if (!bindCyclePair_) return;
  const auto cycle = [this] { start(mainThread_, cycleInLaterTurn()); };
  const bool isBound = bindCyclePair_(cycleHotKeyKeyCode, keyLabel(cycleHotKeyKeyCode).english(),
                                      cycleHotKeyModifiers, cycle);
  if (isBound) return;
  showToast(words("{shortcut} is already in use — pick another in Settings",
                  {{"shortcut", hotKeyLabel(cycleHotKeyKeyCode, cycleHotKeyModifiers)}}));
}

Task<> MacAppState::cycleInLaterTurn() {
  cycleLanguagePair();
  co_return;
}

}  // namespace quillo
