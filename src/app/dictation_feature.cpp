#include "app/dictation_feature.h"

#include "input/shortcut_model.h"

namespace quillo {
namespace {

MacDictationController::Ports controllerPorts(const HostPorts& ports) {
  return {
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
  };
}

}  // namespace

DictationFeature::DictationFeature(const HostPorts& ports, MacAppState& state,
                                   AccountFeature& account, Navigator& navigator)
    : insertion_(ports.mainThread, ports.permissions, ports.workspace, ports.pasteboard,
                 ports.keyPoster, ports.keyboardState, ports.application, clipboardGate_,
                 ports.log),
      hud_(ports.mainThread, ports.panels, ports.screens,
           [&state] { return shortcutDisplayText(state); }),
      reviewPanel_(ports.mainThread, ports.panels, ports.screens, ports.application, state),
      controller_(
          {
              .api = account.api(),
              .authority = account.auth(),
              .account = state,
              .history = account.history(),
              .insertion = insertion_,
              .panel = hud_,
              .review = reviewPanel_,
              .navigator = navigator,
          },
          {.writing = state, .recording = state, .insertion = state, .history = state},
          controllerPorts(ports)) {
  hud_.follow(controller_, hudCommands());
  traceStatus(ports.systemLog);
}

DictationHUDCommands DictationFeature::hudCommands() {
  return {.cancelProcessing = [this] { controller_.cancelProcessing(); },
          .retryLastRecording = [this] { controller_.retryLastRecording(); },
          .dismissLastFailure = [this] { controller_.dismissLastFailure(); }};
}

// The course of a dictation can be followed in the system's log; it holds no text of the user.
void DictationFeature::traceStatus(SystemLog& systemLog) {
  effects_.push_back(controller_.statusText.observe([&systemLog](const Words& status) {
    systemLog.write("[Quillo] status: " + status.english());
  }));
  effects_.push_back(controller_.lastError.observe([&systemLog](const std::optional<Words>& error) {
    if (error && !error->empty()) systemLog.write("[Quillo] " + error->english());
  }));
}

}  // namespace quillo
