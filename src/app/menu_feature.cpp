#include "app/menu_feature.h"

#include <utility>

namespace quillo {
namespace {

MenuBarActions menuBarActions(const HostPorts& ports, WritingSettings& writing,
                              MacDictationController& dictation,
                              std::function<void()> openDiagnosticsLog) {
  return {
      .toggleRecording = [&mainThread = *ports.mainThread,
                          &dictation] { start(mainThread, dictation.toggleRecording()); },
      .retryLastRecording = [&dictation] { dictation.retryLastRecording(); },
      .insertLastResult = [&dictation] { dictation.insertLastResult(dictation.lastResult); },
      .copyLastResult = [&dictation] { dictation.copyLastResult(); },
      .cycleLanguagePair = [&writing] { writing.cycleLanguagePair(); },
      .applyProfile = [&writing](const WritingProfile& profile) { writing.applyProfile(profile); },
      .openDiagnosticsLog = std::move(openDiagnosticsLog),
      .quit = [&application = *ports.application] { application.terminate(); },
  };
}

}  // namespace

MenuFeature::MenuFeature(const HostPorts& ports, MacAppState& state, AccountFeature& account,
                         MacDictationController& dictation,
                         std::function<void()> openDiagnosticsLog)
    : menuBar_(ports.mainThread, ports.statusItem, dictation, state, state, account.auth(),
               ports.session,
               menuBarActions(ports, state, dictation, std::move(openDiagnosticsLog))) {}

}  // namespace quillo
