// Where the program's own logic starts and ends: the launch sequence, the one-time prompt,
// reopening and terminating.
#pragma once

#include <functional>
#include <string>

#include "base/log.h"
#include "base/main_thread.h"
#include "input/dictation_shortcuts.h"
#include "input/global_hot_key.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "state/app_state.h"

namespace quillo {

// What the launch reaches in rooms that stand beside or above this one. An absent step is skipped.
struct LaunchSteps {
  std::function<void()> provideServices;
  std::function<void()> startSelectionBubble;
  std::function<void(const std::string& clientID)> configureGoogleSignIn;
  std::function<void()> installPendingUpdate;
};

// Main thread.
class MurmexMacAppDelegate {
 public:
  MurmexMacAppDelegate(MainThread& mainThread, Application& application, Alerts& alerts,
                       MacAppState& appState, DictationShortcuts& shortcuts,
                       GlobalHotKey& globalHotKey, Log& log, LaunchSteps steps = {});

  void applicationDidFinishLaunching();
  void applicationDidBecomeActive();
  // True: the desktop goes on with what it does itself.
  bool applicationShouldHandleReopen(bool hasVisibleWindows);
  // The shortcuts and a running recording outlive the window.
  bool applicationShouldTerminateAfterLastWindowClosed() const { return false; }
  void applicationWillTerminate();

 private:
  void logLaunch();
  void startBubbleSoon();
  void configureGoogleSignIn();

  MainThread& mainThread_;
  Application& application_;
  Alerts& alerts_;
  MacAppState& appState_;
  DictationShortcuts& shortcuts_;
  GlobalHotKey& globalHotKey_;
  Log& log_;
  LaunchSteps steps_;
  Timer bubbleStart_;
};

}  // namespace quillo
