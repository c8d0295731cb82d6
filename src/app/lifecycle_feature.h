// Launch and end of the program, and what the desktop tells it in between.
#pragma once

#include "app/host_ports.h"
#include "app/shortcuts_feature.h"
#include "shell/lifecycle/app_delegate.h"
#include "state/app_state.h"

namespace quillo {

// Main thread.
class LifecycleFeature {
 public:
  LifecycleFeature(const HostPorts& ports, MacAppState& state, ShortcutsFeature& shortcuts,
                   LaunchSteps steps);

  // The launch sequence, once the desktop is there.
  void launch();

 private:
  void receiveDesktopEvents(Application& application);

  const DesktopSession& session_;
  SystemLog& systemLog_;
  MurmexMacAppDelegate delegate_;
};

}  // namespace quillo
