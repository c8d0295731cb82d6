// The shortcuts that start, stop and repeat a dictation.
#pragma once

#include <optional>
#include <string_view>

#include "base/main_thread.h"
#include "input/debounce.h"
#include "input/dictation_controls.h"
#include "input/push_to_talk.h"
#include "input/shortcut_model.h"
#include "input/shortcut_routes.h"
#include "state/shortcut_settings.h"

namespace quillo {

// Several routes report one press: each action is debounced. Main thread.
class DictationShortcuts {
 public:
  DictationShortcuts(MainThread& mainThread, const ShortcutSettings& settings,
                     ShortcutRoutes& routes, MacPushToTalk& pushToTalk,
                     DictationControls& controls);

  // At launch.
  void bindPasteLast();
  // At launch, and after the mode or the toggle shortcut was set. The hold shortcut needs no call:
  // it is read at every event.
  void applyActivationMode(std::string_view mode);

 private:
  void detectModifiers(std::optional<HoldShortcut> tapShortcut);
  void detectToggleChord();
  void toggle();
  void pasteLast();

  MainThread& mainThread_;
  const ShortcutSettings& settings_;
  ShortcutRoutes& routes_;
  MacPushToTalk& pushToTalk_;
  DictationControls& controls_;
  Debounce toggleDebounce_;
  Debounce pasteLastDebounce_;
};

}  // namespace quillo
