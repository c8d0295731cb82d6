#include "app/shortcuts_feature.h"

#include <utility>

namespace quillo {

ShortcutsFeature::ShortcutsFeature(const HostPorts& ports, MacAppState& state,
                                   MacDictationController& dictation)
    : dictationControls_(dictation),
      hotKeyTap_(ports.mainThread, ports.permissions, ports.eventTaps, ports.log),
      globalHotKey_(ports.hotKeys, ports.log),
      hidMonitor_(ports.mainThread, ports.permissions, ports.hidKeyboards, ports.log),
      pushToTalk_(ports.mainThread, ports.eventMonitors, hidMonitor_, state, dictationControls_),
      cycleHotKey_(ports.mainThread, hotKeyTap_, globalHotKey_, hidMonitor_, ports.eventMonitors),
      shortcuts_(ports.mainThread, state, routes_, pushToTalk_, dictationControls_) {
  applyChanges(state);
  bindCycleHotKey(state);
}

void ShortcutsFeature::applyChanges(const ShortcutSettings& settings) {
  const auto apply = [this, &settings](const std::string&) {
    shortcuts_.applyActivationMode(settings.activationMode.get());
  };
  effects_.push_back(settings.activationMode.observe(apply));
  effects_.push_back(settings.toggleShortcut.observe(apply));
}

void ShortcutsFeature::bindCycleHotKey(MacAppState& state) {
  state.setCyclePairBinding([this](std::int64_t keyCode, const std::string& character,
                                   std::int64_t modifiers, std::function<void()> action) {
    return cycleHotKey_.bindCyclePair(keyCode, character, modifiers, std::move(action));
  });
}

}  // namespace quillo
