// Every setting of the user, and the last known usage.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/log.h"
#include "base/main_thread.h"
#include "base/task.h"
#include "platform/application.h"
#include "platform/clock.h"
#include "platform/login_item.h"
#include "platform/machine.h"
#include "platform/random.h"
#include "platform/user_defaults.h"
#include "state/account_state.h"
#include "state/appearance_settings.h"
#include "state/bubble_settings.h"
#include "state/history_settings.h"
#include "state/insertion_settings.h"
#include "state/recording_settings.h"
#include "state/setting_registry.h"
#include "state/shortcut_settings.h"
#include "state/writing_settings.h"

namespace quillo {

// All groups together; a room takes those that it reads. Settings are shared by all accounts on
// this machine: they outlive a sign-out. Each is written as it is assigned. Main thread only.
class MacAppState : public SettingRegistry,
                    public AccountState,
                    public WritingSettings,
                    public InsertionSettings,
                    public ShortcutSettings,
                    public RecordingSettings,
                    public HistorySettings,
                    public AppearanceSettings,
                    public BubbleSettings {
 public:
  MacAppState(MainThread& mainThread, UserDefaults& defaults, Clock& clock, Random& random,
              Machine& machine, LoginItem& loginItem, Application& application, Log& log);

  // Binds `action` to the chord by every route there is, in place of an earlier one. False when no
  // route took it.
  using CyclePairBinding =
      std::function<bool(std::int64_t keyCode, std::string character, std::int64_t modifiers,
                         std::function<void()> action)>;
  void setCyclePairBinding(CyclePairBinding bind) { bindCyclePair_ = std::move(bind); }
  // At launch, and by itself whenever the chord changes. Without a binding nothing happens.
  void registerCycleHotKey();

 private:
  Task<> cycleInLaterTurn();

  MainThread& mainThread_;
  CyclePairBinding bindCyclePair_;
  std::vector<Subscription> ownEffects_;
};

}  // namespace quillo
