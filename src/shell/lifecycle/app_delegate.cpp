#include "shell/lifecycle/app_delegate.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration bubbleDelay = 2s;

const Alerts::Alert bubbleIntro = {
    words("New: edit any text, anywhere"),
    words("Select text in any app — a small Fix / Improve / Translate bar appears over it and "
          "rewrites "
          "it in place. It follows your custom instructions, and you can summon it on the current "
          "selection any time with ⌃⌥E.\n\nTurn it on? (You can change this later in Settings → "
          "Selection edit bubble.)"),
    {words("Turn it on"), words("Not now")}};
constexpr std::size_t turnItOn = 0;

}  // namespace

MurmexMacAppDelegate::MurmexMacAppDelegate(MainThread& mainThread, Application& application,
                                           Alerts& alerts, MacAppState& appState,
                                           DictationShortcuts& shortcuts,
                                           GlobalHotKey& globalHotKey, Log& log, LaunchSteps steps)
    : mainThread_(mainThread),
      application_(application),
      alerts_(alerts),
      appState_(appState),
      shortcuts_(shortcuts),
      globalHotKey_(globalHotKey),
      log_(log),
      steps_(std::move(steps)) {}

void MurmexMacAppDelegate::applicationDidFinishLaunching() {
  logLaunch();
  appState_.applyActivationPolicy();
  appState_.applyAppearance();
  shortcuts_.bindPasteLast();
  shortcuts_.applyActivationMode(appState_.activationMode.get());
  if (steps_.provideServices) steps_.provideServices();
  appState_.registerCycleHotKey();
  startBubbleSoon();
  configureGoogleSignIn();
}

void MurmexMacAppDelegate::logLaunch() {
  const BundleInformation& bundle = application_.bundle();
  log_.log("app", "launch version=" + bundle.shortVersion.value_or("unknown") + " build=" +
                      bundle.version.value_or("unknown") + " bundle=" + bundle.bundlePath);
}

void MurmexMacAppDelegate::startBubbleSoon() {
  bubbleStart_ = Timer(mainThread_, bubbleDelay, [this] {
    if (appState_.selectionBubbleEnabled && steps_.startSelectionBubble)
      steps_.startSelectionBubble();
  });
}

void MurmexMacAppDelegate::configureGoogleSignIn() {
  const auto& clientID = application_.bundle().googleClientID;
  if (clientID && steps_.configureGoogleSignIn) steps_.configureGoogleSignIn(*clientID);
}

void MurmexMacAppDelegate::applicationDidBecomeActive() {
  if (appState_.sawSelectionBubbleIntro) return;
  // Stored before the question, so that it is asked once whatever the user answers.
  appState_.sawSelectionBubbleIntro = true;
  if (appState_.selectionBubbleEnabled) return;
  if (alerts_.runModal(bubbleIntro) == turnItOn) appState_.selectionBubbleEnabled = true;
}

bool MurmexMacAppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
  if (!hasVisibleWindows) {
    application_.orderMainWindowsFront();
    application_.activateIgnoringOtherApps();
  }
  return true;
}

void MurmexMacAppDelegate::applicationWillTerminate() {
  log_.log("app", "terminate");
  if (steps_.installPendingUpdate) steps_.installPendingUpdate();
  globalHotKey_.unregisterAll();
}

}  // namespace quillo
