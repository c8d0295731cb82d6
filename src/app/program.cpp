#include "app/program.h"

#include <utility>

#include "api/fresh_auth.h"

namespace quillo {

Program::Program(HostPorts ports, Backend backend, std::function<void()> openDiagnosticsLog)
    : ports_(ports),
      appState_(ports.mainThread, ports.userDefaults, ports.clock, ports.random, ports.machine,
                ports.loginItem, ports.application, ports.log),
      api_(ports.mainThread, ports.network, ports.machine, ports.random, ports.systemLog, backend),
      tokens_(ports.keychain, ports.log),
      history_(appState_, appState_, ports.userDefaults, ports.files, ports.queues, ports.clock,
               ports.random),
      auth_(ports.mainThread, ports.network, ports.userDefaults, tokens_, appState_, history_,
            ports.clock, ports.log, backend),
      insertion_(ports.mainThread, ports.permissions, ports.workspace, ports.pasteboard,
                 ports.keyPoster, ports.keyboardState, ports.application, clipboardGate_,
                 ports.log),
      hud_(ports.mainThread, ports.panels, ports.screens, [this] { return shortcutText(); }),
      toast_(ports.mainThread, ports.panels, ports.screens),
      reviewPanel_(ports.mainThread, ports.panels, ports.screens, ports.application, appState_),
      navigator_(ports.mainThread, ports.alerts),
      dictation_({api_, auth_, appState_, history_, insertion_, hud_, reviewPanel_, navigator_},
                 {.writing = appState_,
                  .recording = appState_,
                  .insertion = appState_,
                  .history = appState_},
                 {
                     .mainThread = ports.mainThread,
                     .audio = ports.audioSystem,
                     .devices = ports.audioDevices,
                     .permissions = ports.permissions,
                     .workspace = ports.workspace,
                     .application = ports.application,
                     .alerts = ports.alerts,
                     .sounds = ports.sounds,
                     .files = ports.files,
                     .queues = ports.queues,
                     .random = ports.random,
                     .log = ports.log,
                 }),
      hotKeyTap_(ports.mainThread, ports.permissions, ports.eventTaps, ports.log),
      globalHotKey_(ports.hotKeys, ports.log),
      hidMonitor_(ports.mainThread, ports.permissions, ports.hidKeyboards, ports.log),
      pushToTalk_(ports.mainThread, ports.eventMonitors, hidMonitor_, appState_,
                  dictationControls_),
      cycleHotKey_(ports.mainThread, hotKeyTap_, globalHotKey_, hidMonitor_, ports.eventMonitors),
      shortcuts_(ports.mainThread, appState_, shortcutRoutes_, pushToTalk_, dictationControls_),
      textInPlace_(ports,
                   {appState_, api_, auth_, navigator_, clipboardGate_, insertion_, globalHotKey_,
                    [this](Words text) { toast_.showToast(std::move(text)); }}),
      menuBar_(ports.mainThread, ports.statusItem, dictation_, appState_, appState_, auth_,
               ports.session, menuBarActions(std::move(openDiagnosticsLog))),
      delegate_(ports.mainThread, ports.application, ports.alerts, appState_, shortcuts_,
                globalHotKey_, ports.log, launchSteps()) {
  plugInUpperRooms();
  observeSettings();
  receiveDesktopEvents();
  traceStatus();
}

Program::~Program() {
  ports_.mainThread.abandonTasks();
}

void Program::launch() {
  delegate_.applicationDidFinishLaunching();
  const auto limitation = ports_.session.limitation();
  ports_.systemLog.write("[Quillo] " + (limitation ? limitation->english() : "shortcut armed"));
}

Words Program::shortcutText() const {
  return shortcutDisplayText(appState_);
}

DictationHUDCommands Program::hudCommands() {
  return {.cancelProcessing = [this] { dictation_.cancelProcessing(); },
          .retryLastRecording = [this] { dictation_.retryLastRecording(); },
          .dismissLastFailure = [this] { dictation_.dismissLastFailure(); }};
}

LaunchSteps Program::launchSteps() {
  LaunchSteps steps;
  steps.provideServices = [this] { textInPlace_.provideServices(); };
  steps.startSelectionBubble = [this] { textInPlace_.startSelectionBubble(); };
  return steps;
}

MenuBarActions Program::menuBarActions(std::function<void()> openDiagnosticsLog) {
  return {
      .toggleRecording = [this] { start(ports_.mainThread, dictation_.toggleRecording()); },
      .retryLastRecording = [this] { dictation_.retryLastRecording(); },
      .insertLastResult = [this] { dictation_.insertLastResult(dictation_.lastResult); },
      .copyLastResult = [this] { dictation_.copyLastResult(); },
      .cycleLanguagePair = [this] { appState_.cycleLanguagePair(); },
      .applyProfile = [this](const WritingProfile& profile) { appState_.applyProfile(profile); },
      .openDiagnosticsLog = std::move(openDiagnosticsLog),
      .quit = [this] { ports_.application.terminate(); },
  };
}

void Program::plugInUpperRooms() {
  hud_.follow(dictation_, hudCommands());
  appState_.setUsageSource([this] {
    return withFreshAuth<UsageData>(auth_, [this] { return api_.getUsage(appState_.identity()); });
  });
  appState_.setToast([this](Words text) { toast_.showToast(std::move(text)); });
  appState_.setCyclePairBinding([this](std::int64_t keyCode, const std::string& character,
                                       std::int64_t modifiers, std::function<void()> action) {
    return cycleHotKey_.bindCyclePair(keyCode, character, modifiers, std::move(action));
  });
}

void Program::observeSettings() {
  const auto applyActivationMode = [this](const std::string&) {
    shortcuts_.applyActivationMode(appState_.activationMode.get());
  };
  effects_.push_back(appState_.activationMode.observe(applyActivationMode));
  effects_.push_back(appState_.toggleShortcut.observe(applyActivationMode));
}

void Program::receiveDesktopEvents() {
  ports_.application.setEvents({
      .didBecomeActive = [this] { delegate_.applicationDidBecomeActive(); },
      .reopen =
          [this] {
            delegate_.applicationShouldHandleReopen(ports_.application.hasVisibleWindows());
          },
      .willTerminate = [this] { delegate_.applicationWillTerminate(); },
  });
}

// The course of a dictation can be followed in the system's log; it holds no text of the user.
void Program::traceStatus() {
  effects_.push_back(dictation_.statusText.observe([this](const Words& status) {
    ports_.systemLog.write("[Quillo] status: " + status.english());
  }));
  effects_.push_back(dictation_.lastError.observe([this](const std::optional<Words>& error) {
    if (error && !error->empty()) ports_.systemLog.write("[Quillo] " + error->english());
  }));
}

}  // namespace quillo
