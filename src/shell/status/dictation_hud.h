// The small floating status panel of a dictation.
#pragma once

#include <memory>
#include <optional>

#include "base/task.h"
#include "core/status_panel.h"
#include "platform/panels.h"
#include "platform/screens.h"
#include "shell/status/dictation_hud_view.h"

namespace quillo {

// Shows what the dictation publishes, over any application and without taking its focus. The panel
// is made at the first show, and kept; while a recording runs, it does not hide. Main thread.
class MacDictationHUD final : public StatusPanel {
 public:
  MacDictationHUD(MainThread& mainThread, Panels& panels, Screens& screens,
                  MacDictationHUDView::ShortcutText shortcutText);

  // To be called once, before anything is shown. `dictation` outlives this, or everything that is
  // shown has gone before it.
  void follow(const DictationState& dictation, DictationHUDCommands commands);

  void show() override;
  void hideAfter(Duration delay) override;
  void hideNow() override;

 private:
  void makePanel();
  void place();
  void applyMouseRule();
  Task<> hideLater(Duration delay);
  void orderOut();

  MainThread& mainThread_;
  Panels& panels_;
  Screens& screens_;
  MacDictationHUDView::ShortcutText shortcutText_;
  std::optional<MacDictationHUDView> view_;
  std::unique_ptr<Panel> panel_;
  Subscription mouseRule_;
  TaskHandle<> hideTask_;
};

}  // namespace quillo
