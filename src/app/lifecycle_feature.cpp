#include "app/lifecycle_feature.h"

#include <utility>

namespace quillo {

LifecycleFeature::LifecycleFeature(const HostPorts& ports, MacAppState& state,
                                   ShortcutsFeature& shortcuts, LaunchSteps steps)
    : session_(ports.session),
      systemLog_(ports.systemLog),
      delegate_(ports.mainThread, ports.application, ports.alerts, state,
                shortcuts.dictationShortcuts(), shortcuts.globalHotKey(), ports.log,
                std::move(steps)) {
  receiveDesktopEvents(ports.application);
}

void LifecycleFeature::launch() {
  delegate_.applicationDidFinishLaunching();
  const auto limitation = session_.limitation();
  systemLog_.write("[Quillo] " + (limitation ? limitation->english() : "shortcut armed"));
}

void LifecycleFeature::receiveDesktopEvents(Application& application) {
  application.setEvents({
      .didBecomeActive = [this] { delegate_.applicationDidBecomeActive(); },
      .reopen =
          [this, &application] {
            delegate_.applicationShouldHandleReopen(application.hasVisibleWindows());
          },
      .willTerminate = [this] { delegate_.applicationWillTerminate(); },
  });
}

}  // namespace quillo
