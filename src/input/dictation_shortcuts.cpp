#include "input/dictation_shortcuts.h"

namespace quillo {
namespace {

constexpr Duration debounceInterval = std::chrono::milliseconds(250);

}  // namespace

DictationShortcuts::DictationShortcuts(MainThread& mainThread, const ShortcutSettings& settings,
                                       ShortcutRoutes& routes, MacPushToTalk& pushToTalk,
                                       DictationControls& controls)
    : mainThread_(mainThread),
      settings_(settings),
      routes_(routes),
      pushToTalk_(pushToTalk),
      controls_(controls),
      toggleDebounce_(mainThread, debounceInterval),
      pasteLastDebounce_(mainThread, debounceInterval) {}

void DictationShortcuts::bindPasteLast() {
  routes_.bind(pasteLastChord, [this] { pasteLast(); });
}

void DictationShortcuts::applyActivationMode(std::string_view mode) {
  if (activationModeFrom(mode) == ActivationMode::hold) return detectModifiers(std::nullopt);
  switch (toggleShortcutFrom(settings_.toggleShortcut.get())) {
    case ToggleShortcut::ctrlOptSpace:
      return detectToggleChord();
    case ToggleShortcut::fn:
      return detectModifiers(HoldShortcut::fn);
    case ToggleShortcut::rightOpt:
      return detectModifiers(HoldShortcut::rightOpt);
  }
}

void DictationShortcuts::detectModifiers(std::optional<HoldShortcut> tapShortcut) {
  routes_.unbind(toggleChord);
  pushToTalk_.stop();
  pushToTalk_.setTapShortcut(tapShortcut);
  pushToTalk_.start();
}

void DictationShortcuts::detectToggleChord() {
  pushToTalk_.stop();
  routes_.bind(toggleChord, [this] { toggle(); });
}

void DictationShortcuts::toggle() {
  if (!toggleDebounce_.admits()) return;
  mainThread_.post([this] {
    if (settings_.activationMode.get() == rawValueOf(ActivationMode::toggle))
      start(mainThread_, controls_.toggleRecording());
  });
}

void DictationShortcuts::pasteLast() {
  if (!pasteLastDebounce_.admits()) return;
  mainThread_.post([this] { controls_.insertLastResult(); });
}

}  // namespace quillo
