// Taps that see key-downs before everybody else.
#pragma once

#include <vector>

#include "hosts/simulated/desktop/switched_permissions.h"
#include "hosts/simulated/keyboard/key_route.h"
#include "platform/event_taps.h"
#include "platform/key_event.h"

namespace quillo::simulated {

// A tap whose program does not answer for a second is switched off, and the event goes on.
class SwallowingEventTaps final : public EventTaps {
 public:
  SwallowingEventTaps(VirtualMainThread& mainThread, Timeline& timeline, KeyRoute route,
                      const SwitchedPermissions& permissions)
      : mainThread_(mainThread), timeline_(timeline), route_(route), permissions_(permissions) {}

  [[nodiscard]] Result<std::unique_ptr<Tap>, EventTapFailure> createKeyDownTap(
      std::function<TapVerdict(const KeyEvent&)> seen,
      std::function<void(TapInterruption)> interrupted) override;

  // Whether some tap is switched on.
  bool isWatching() const;
  // Asks the taps, the newest first; calls `decided` once.
  void offer(const KeyEvent& event, std::function<void(TapVerdict)> decided);

  // --- Driver ---

  // The system switches every tap off and tells its owner.
  void interrupt(TapInterruption reason);
  KeyRoute& route() { return route_; }
  std::size_t tapCount() const;

 private:
  struct State {
    std::function<TapVerdict(const KeyEvent&)> seen;
    std::function<void(TapInterruption)> interrupted;
    bool isEnabled = true;
  };
  class OwnedTap;

  TapVerdict ask(const KeyEvent& event);

  VirtualMainThread& mainThread_;
  Timeline& timeline_;
  KeyRoute route_;
  const SwitchedPermissions& permissions_;
  std::vector<std::weak_ptr<State>> taps_;
};

}  // namespace quillo::simulated
