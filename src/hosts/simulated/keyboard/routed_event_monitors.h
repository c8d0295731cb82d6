// Monitors of the events that go to other applications, and of the program's own.
#pragma once

#include <vector>

#include "hosts/simulated/desktop/switched_permissions.h"
#include "hosts/simulated/keyboard/key_route.h"
#include "platform/event_monitors.h"
#include "platform/key_event.h"

namespace quillo::simulated {

// Without leave of the user a global monitor exists and sees nothing.
class RoutedEventMonitors final : public EventMonitors {
 public:
  RoutedEventMonitors(KeyRoute globalRoute, KeyRoute localRoute,
                      const SwitchedPermissions& permissions)
      : globalRoute_(globalRoute), localRoute_(localRoute), permissions_(permissions) {}

  [[nodiscard]] Result<std::shared_ptr<void>, EventMonitorFailure> addGlobalMonitor(
      KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) override;
  [[nodiscard]] Result<std::shared_ptr<void>, EventMonitorFailure> addLocalMonitor(
      KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) override;

  // An event goes to another application.
  void showGlobally(const KeyEvent& event);
  // An event goes to this program; `passed` runs when no monitor swallowed it.
  void showLocally(const KeyEvent& event, std::function<void()> passed);

  // --- Driver ---

  KeyRoute& globalRoute() { return globalRoute_; }
  KeyRoute& localRoute() { return localRoute_; }
  // Monitors that exist, of both kinds.
  std::size_t monitorCount() const;

 private:
  struct Monitor {
    KeyEvent::Type type;
    std::function<TapVerdict(const KeyEvent&)> seen;
  };
  using Monitors = std::vector<std::weak_ptr<Monitor>>;

  static std::shared_ptr<void> add(Monitors& monitors, Monitor monitor);
  // Shows `event` to one after another until one swallows it.
  static TapVerdict show(const Monitors& monitors, const KeyEvent& event);

  KeyRoute globalRoute_;
  KeyRoute localRoute_;
  const SwitchedPermissions& permissions_;
  Monitors global_;
  Monitors local_;
};

}  // namespace quillo::simulated
