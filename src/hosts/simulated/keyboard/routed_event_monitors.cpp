#include "hosts/simulated/keyboard/routed_event_monitors.h"

#include <algorithm>

namespace quillo::simulated {

std::shared_ptr<void> RoutedEventMonitors::add(Monitors& monitors, Monitor monitor) {
  std::erase_if(monitors, [](const auto& old) { return old.expired(); });
  auto added = std::make_shared<Monitor>(std::move(monitor));
  monitors.push_back(added);
  return added;
}

Result<std::shared_ptr<void>, EventMonitorFailure> RoutedEventMonitors::addGlobalMonitor(
    KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) {
  if (globalRoute_.isRefused()) return EventMonitorFailure::refused;
  return add(global_, {type, [seen = std::move(seen)](const KeyEvent& event) {
                         seen(event);
                         return TapVerdict::pass;
                       }});
}

Result<std::shared_ptr<void>, EventMonitorFailure> RoutedEventMonitors::addLocalMonitor(
    KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) {
  if (localRoute_.isRefused()) return EventMonitorFailure::refused;
  return add(local_, {type, std::move(seen)});
}

TapVerdict RoutedEventMonitors::show(const Monitors& monitors, const KeyEvent& event) {
  // A copy: a monitor may add or drop others.
  for (const auto& weak : std::vector(monitors)) {
    const auto monitor = weak.lock();
    if (monitor && monitor->type == event.type && monitor->seen(event) == TapVerdict::swallow)
      return TapVerdict::swallow;
  }
  return TapVerdict::pass;
}

void RoutedEventMonitors::showGlobally(const KeyEvent& event) {
  if (!permissions_.isAccessibilityTrusted() && !permissions_.hasListenEventAccess()) return;
  if (global_.empty()) return;
  globalRoute_.carry([this, event] { show(global_, event); });
}

void RoutedEventMonitors::showLocally(const KeyEvent& event, std::function<void()> passed) {
  localRoute_.carry([this, event, passed = std::move(passed)] {
    if (show(local_, event) == TapVerdict::pass) passed();
  });
}

std::size_t RoutedEventMonitors::monitorCount() const {
  const auto count = [](const Monitors& monitors) {
    return static_cast<std::size_t>(std::count_if(
        monitors.begin(), monitors.end(), [](const auto& weak) { return !weak.expired(); }));
  };
  return count(global_) + count(local_);
}

}  // namespace quillo::simulated
