#include "hosts/linux/x11/windows/x11_workspace.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <utility>

namespace quillo::linux_host {
namespace {

// A process that has ended and that its parent has not yet noticed.
bool isZombie(std::int32_t processIdentifier) {
  std::ifstream file("/proc/" + std::to_string(processIdentifier) + "/stat");
  std::string status;
  std::getline(file, status);
  // The state follows the name, which may hold anything but ends with the last parenthesis.
  const std::size_t name = status.rfind(')');
  return name != std::string::npos && status.compare(name, 3, ") Z") == 0;
}

}  // namespace

X11Workspace::X11Workspace(MainThread& mainThread, X11Connection& connection,
                           X11EventSource& events, X11Windows& windows, X11FrontWindow& front,
                           std::optional<std::string> ownBundleIdentifier)
    : mainThread_(mainThread),
      connection_(connection),
      windows_(windows),
      front_(front),
      ownBundleIdentifier_(std::move(ownBundleIdentifier)),
      activeWindowAtom_(connection.atom("_NET_ACTIVE_WINDOW")),
      subscription_(events.observe([this](const xcb_generic_event_t& event) { handle(event); })) {
  lastActivated_ = frontmostApplication();
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
  const WindowApplication* const known = front_.application();
  if (known == nullptr) return std::nullopt;
  RunningApplication application;
  application.processIdentifier = known->processIdentifier;
  application.window = known->window;
  if (!known->name.empty()) application.localizedName = known->name;
  if (known->processIdentifier == getpid()) {
    application.bundleIdentifier = ownBundleIdentifier_;
  } else if (!known->bundleIdentifier.empty()) {
    application.bundleIdentifier = known->bundleIdentifier;
  }
  return application;
}

Result<void, WorkspaceFailure> X11Workspace::activate(const RunningApplication& application) {
  auto window = static_cast<xcb_window_t>(application.window);
  if (window == XCB_WINDOW_NONE || !windows_.exists(window)) {
    if (application.processIdentifier == 0) return WorkspaceFailure::nothingToShow;
    const auto other = windows_.windowOf(application.processIdentifier);
    if (!other) return WorkspaceFailure::nothingToShow;
    window = *other;
  }
  windows_.activate(window);
  return {};
}

bool X11Workspace::isTerminated(const RunningApplication& application) const {
  if (application.processIdentifier == 0) {
    return !windows_.exists(static_cast<xcb_window_t>(application.window));
  }
  if (kill(application.processIdentifier, 0) != 0) return errno == ESRCH;
  return isZombie(application.processIdentifier);
}

std::shared_ptr<void> X11Workspace::observeActivation(
    std::function<void(const RunningApplication&)> activated) {
  return observers_.add(std::move(activated));
}

void X11Workspace::handle(const xcb_generic_event_t& event) {
  if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
  const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
  if (changed.window == connection_.root() && changed.atom == activeWindowAtom_) {
    activeWindowChanged();
  }
}

void X11Workspace::activeWindowChanged() {
  const auto front = frontmostApplication();
  // Window managers call no window active for a moment while they switch; and an application that
  // changes between its own windows was in front already.
  if (!front || front == lastActivated_) return;
  lastActivated_ = front;
  mainThread_.post(
      [tell = observers_.present(), application = *front, alive = std::weak_ptr(alive_)] {
        if (!alive.expired()) tell(application);
      });
}

}  // namespace quillo::linux_host
