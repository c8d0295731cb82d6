#include "app/program.h"

#include <utility>

namespace quillo {

Program::Program(const HostPorts& ports, const Backend& backend,
                 std::function<void()> openDiagnosticsLog)
    : mainThread_(ports.mainThread),
      appState_(ports.mainThread, ports.userDefaults, ports.clock, ports.random, ports.machine,
                ports.loginItem, ports.application, ports.log),
      toast_(ports.mainThread, ports.panels, ports.screens),
      navigator_(ports.mainThread, ports.alerts),
      account_(ports, appState_, backend),
      dictation_(ports, appState_, account_, navigator_),
      shortcuts_(ports, appState_, dictation_.controller()),
      textInPlace_(ports,
                   {appState_, account_.api(), account_.auth(), navigator_,
                    dictation_.clipboardGate(), dictation_.insertion(), shortcuts_.globalHotKey(),
                    [this](Words text) { toast_.showToast(std::move(text)); }}),
      menu_(ports, appState_, account_, dictation_.controller(), std::move(openDiagnosticsLog)),
      lifecycle_(ports, appState_, shortcuts_, launchSteps()) {
  appState_.setToast([this](Words text) { toast_.showToast(std::move(text)); });
}

Program::~Program() {
  mainThread_.abandonTasks();
}

LaunchSteps Program::launchSteps() {
  LaunchSteps steps;
  steps.provideServices = [this] { textInPlace_.provideServices(); };
  steps.startSelectionBubble = [this] { textInPlace_.startSelectionBubble(); };
  return steps;
}

}  // namespace quillo
