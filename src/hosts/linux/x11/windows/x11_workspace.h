// The applications on the desktop.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/main_thread.h"
#include "hosts/linux/posix/observer_list.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"
#include "hosts/linux/x11/windows/x11_front_window.h"
#include "hosts/linux/x11/windows/x11_windows.h"
#include "platform/workspace.h"

namespace quillo::linux_host {

class X11Workspace final : public Workspace {
 public:
  // The references outlive this. `ownBundleIdentifier` is this program's own.
  X11Workspace(MainThread& mainThread, X11Connection& connection, X11EventSource& events,
               X11Windows& windows, X11FrontWindow& front,
               std::optional<std::string> ownBundleIdentifier);

  std::optional<RunningApplication> frontmostApplication() const override;
  Result<void, WorkspaceFailure> activate(const RunningApplication& application) override;
  bool isTerminated(const RunningApplication& application) const override;
  std::shared_ptr<void> observeActivation(
      std::function<void(const RunningApplication&)> activated) override;

 private:
  void handle(const xcb_generic_event_t& event);
  void activeWindowChanged();

  MainThread& mainThread_;
  X11Connection& connection_;
  X11Windows& windows_;
  X11FrontWindow& front_;
  std::optional<std::string> ownBundleIdentifier_;
  xcb_atom_t activeWindowAtom_;
  std::optional<RunningApplication> lastActivated_;
  ObserverList<const RunningApplication&> observers_;
  std::shared_ptr<void> alive_ = std::make_shared<int>();
  std::shared_ptr<void> subscription_;
};

}  // namespace quillo::linux_host
