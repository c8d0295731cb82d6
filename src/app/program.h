// The composition root: the whole program, made once, on whatever host it is given.
#pragma once

#include <functional>

#include "api/backend.h"
#include "app/account_feature.h"
#include "app/alert_navigator.h"
#include "app/dictation_feature.h"
#include "app/host_ports.h"
#include "app/lifecycle_feature.h"
#include "app/menu_feature.h"
#include "app/shortcuts_feature.h"
#include "app/text_in_place.h"
#include "shell/toast/toast_panel.h"
#include "state/app_state.h"

namespace quillo {

// Plugs the features together; each owns its rooms. They stand from the ground up. Main thread.
class Program {
 public:
  // The ports outlive the program. `openDiagnosticsLog` shows the file of the log to the user;
  // the menu offers it where there is one.
  Program(const HostPorts& ports, const Backend& backend,
          std::function<void()> openDiagnosticsLog = {});
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  // Abandons the tasks that have not ended: they refer to the rooms.
  ~Program();

  // The launch sequence, once the desktop is there.
  void launch() { lifecycle_.launch(); }

  MacAppState& appState() { return appState_; }
  MacAuthService& auth() { return account_.auth(); }
  MacDictationController& dictation() { return dictation_.controller(); }
  MacHistoryStore& history() { return account_.history(); }
  // Whoever borrows the clipboard beside the program enters it.
  MacClipboardGate& clipboardGate() { return dictation_.clipboardGate(); }
  TextInPlace& textInPlace() { return textInPlace_; }

 private:
  LaunchSteps launchSteps();

  MainThread& mainThread_;
  MacAppState appState_;
  ToastPanel toast_;
  AlertNavigator navigator_;
  AccountFeature account_;
  DictationFeature dictation_;
  ShortcutsFeature shortcuts_;
  TextInPlace textInPlace_;
  MenuFeature menu_;
  LifecycleFeature lifecycle_;
};

}  // namespace quillo
