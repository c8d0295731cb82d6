// The status item and its menu.
#pragma once

#include <functional>

#include "app/account_feature.h"
#include "app/host_ports.h"
#include "core/dictation_controller.h"
#include "shell/menu/menu_bar.h"
#include "state/app_state.h"

namespace quillo {

// Main thread.
class MenuFeature {
 public:
  // The menu offers `openDiagnosticsLog` where there is one.
  MenuFeature(const HostPorts& ports, MacAppState& state, AccountFeature& account,
              MacDictationController& dictation, std::function<void()> openDiagnosticsLog);

 private:
  MenuBar menuBar_;
};

}  // namespace quillo
