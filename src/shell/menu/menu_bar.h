// Keeps the status item as the program is.
#pragma once

#include <memory>
#include <vector>

#include "account/auth_service.h"
#include "base/main_thread.h"
#include "core/dictation_state.h"
#include "platform/desktop_session.h"
#include "platform/status_item.h"
#include "shell/menu/menu_bar_content.h"
#include "state/shortcut_settings.h"
#include "state/writing_settings.h"

namespace quillo {

// Follows the dictation, the account and the settings; the changes of one turn are shown together
// in a later one, and so is the item at first. Main thread.
class MenuBar {
 public:
  MenuBar(MainThread& mainThread, StatusItem& statusItem, const DictationState& dictation,
          const WritingSettings& writing, const ShortcutSettings& shortcuts,
          const MacAuthService& auth, const DesktopSession& session, MenuBarActions actions);
  MenuBar(const MenuBar&) = delete;
  MenuBar& operator=(const MenuBar&) = delete;

  // For what this does not follow by itself.
  void setHasUpdateBadge(bool hasBadge);
  void setIsCheckingForUpdates(bool isChecking);

 private:
  void updateLater();
  void update();

  MainThread& mainThread_;
  StatusItem& statusItem_;
  const DictationState& dictation_;
  const WritingSettings& writing_;
  const ShortcutSettings& shortcuts_;
  const MacAuthService& auth_;
  const DesktopSession& session_;
  MenuBarActions actions_;
  bool hasUpdateBadge_ = false;
  bool isCheckingForUpdates_ = false;
  std::vector<Subscription> subscriptions_;
  Timer update_;
};

}  // namespace quillo
