// The composition root: the whole program, made once, on whatever host it is given.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "account/auth_service.h"
#include "api/backend.h"
#include "api/murmex_api.h"
#include "app/alert_navigator.h"
#include "app/dictation_controls_adapter.h"
#include "app/host_ports.h"
#include "app/text_in_place.h"
#include "core/dictation_controller.h"
#include "input/cycle_hot_key.h"
#include "input/dictation_shortcuts.h"
#include "input/global_hot_key.h"
#include "input/hid_hot_key_monitor.h"
#include "input/hot_key_tap.h"
#include "input/push_to_talk.h"
#include "input/shortcut_routes.h"
#include "insertion/clipboard_gate.h"
#include "insertion/text_insertion.h"
#include "shell/lifecycle/app_delegate.h"
#include "shell/menu/menu_bar.h"
#include "shell/review/review_panel.h"
#include "shell/status/dictation_hud.h"
#include "shell/toast/toast_panel.h"
#include "state/app_state.h"
#include "state/history_store.h"
#include "state/token_store.h"

namespace quillo {

// Main thread. Its members stand from the ground up, and each gets exactly what it uses.
class Program {
 public:
  // The ports outlive the program. `openDiagnosticsLog` shows the file of the log to the user; the
  // menu offers it where there is one.
  Program(HostPorts ports, Backend backend, std::function<void()> openDiagnosticsLog = {});
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  // Abandons the tasks that have not ended: they refer to the rooms.
  ~Program();

  // The launch sequence, once the desktop is there.
  void launch();

  MacAppState& appState() { return appState_; }
  MacAuthService& auth() { return auth_; }
  MacDictationController& dictation() { return dictation_; }
  MacHistoryStore& history() { return history_; }
  // Whoever borrows the clipboard beside the program enters it.
  MacClipboardGate& clipboardGate() { return clipboardGate_; }
  TextInPlace& textInPlace() { return textInPlace_; }

 private:
  Words shortcutText() const;
  DictationHUDCommands hudCommands();
  LaunchSteps launchSteps();
  MenuBarActions menuBarActions(std::function<void()> openDiagnosticsLog);
  void plugInUpperRooms();
  void observeSettings();
  void receiveDesktopEvents();
  void traceStatus();

  HostPorts ports_;

  MacAppState appState_;
  MurmexAPI api_;
  MacKeychainTokenStore tokens_;
  MacHistoryStore history_;
  MacAuthService auth_;

  MacClipboardGate clipboardGate_;
  MacTextInsertion insertion_;

  MacDictationHUD hud_;
  ToastPanel toast_;
  MacReviewPanel reviewPanel_;
  AlertNavigator navigator_;
  MacDictationController dictation_;

  DictationControlsAdapter dictationControls_{dictation_};
  MacHotKeyTap hotKeyTap_;
  GlobalHotKey globalHotKey_;
  MacHIDHotKeyMonitor hidMonitor_;
  ShortcutRoutes shortcutRoutes_{hotKeyTap_, globalHotKey_, hidMonitor_};
  MacPushToTalk pushToTalk_;
  CycleHotKey cycleHotKey_;
  DictationShortcuts shortcuts_;

  TextInPlace textInPlace_;

  MenuBar menuBar_;
  MurmexMacAppDelegate delegate_;
  std::vector<Subscription> effects_;
};

}  // namespace quillo
