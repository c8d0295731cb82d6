#include "hosts/simulated/keyboard/swallowing_event_taps.h"

#include <algorithm>
#include <utility>

namespace quillo::simulated {
namespace {

constexpr Duration longestAnswer = std::chrono::seconds(1);

}  // namespace

class SwallowingEventTaps::OwnedTap final : public Tap {
 public:
  explicit OwnedTap(std::shared_ptr<State> state) : state_(std::move(state)) {}
  void enable() override { state_->isEnabled = true; }

 private:
  std::shared_ptr<State> state_;
};

Result<std::unique_ptr<EventTaps::Tap>, EventTapFailure> SwallowingEventTaps::createKeyDownTap(
    std::function<TapVerdict(const KeyEvent&)> seen,
    std::function<void(TapInterruption)> interrupted) {
  if (route_.isRefused()) return EventTapFailure::notOffered;
  if (!permissions_.hasListenEventAccess()) return EventTapFailure::notAllowed;
  auto state = std::make_shared<State>(State{std::move(seen), std::move(interrupted)});
  taps_.insert(taps_.begin(), state);
  return std::make_unique<OwnedTap>(std::move(state));
}

bool SwallowingEventTaps::isWatching() const {
  return std::any_of(taps_.begin(), taps_.end(), [](const auto& weak) {
    const auto tap = weak.lock();
    return tap && tap->isEnabled;
  });
}

TapVerdict SwallowingEventTaps::ask(const KeyEvent& event) {
  for (const auto& weak : std::vector(taps_)) {
    const auto tap = weak.lock();
    if (tap && tap->isEnabled && tap->seen(event) == TapVerdict::swallow)
      return TapVerdict::swallow;
  }
  return TapVerdict::pass;
}

void SwallowingEventTaps::offer(const KeyEvent& event, std::function<void(TapVerdict)> decided) {
  std::erase_if(taps_, [](const auto& old) { return old.expired(); });
  const auto isDecided = std::make_shared<bool>(false);
  const auto decideOnce = [isDecided, decided = std::move(decided)](TapVerdict verdict) {
    if (!std::exchange(*isDecided, true)) decided(verdict);
  };
  const auto timeOut = timeline_.after(longestAnswer, [this, isDecided, decideOnce] {
    if (*isDecided) return;
    interrupt(TapInterruption::timeout);
    decideOnce(TapVerdict::pass);
  });
  const bool isCarried = route_.carry([this, event, decideOnce, timeOut] {
    timeline_.cancel(timeOut);
    decideOnce(ask(event));
  });
  if (isCarried) return;
  timeline_.cancel(timeOut);
  decideOnce(TapVerdict::pass);
}

void SwallowingEventTaps::interrupt(TapInterruption reason) {
  for (const auto& weak : taps_) {
    const auto tap = weak.lock();
    if (!tap || !std::exchange(tap->isEnabled, false)) continue;
    mainThread_.post([weak, reason] {
      if (const auto alive = weak.lock(); alive && alive->interrupted) alive->interrupted(reason);
    });
  }
}

std::size_t SwallowingEventTaps::tapCount() const {
  return static_cast<std::size_t>(
      std::count_if(taps_.begin(), taps_.end(), [](const auto& weak) { return !weak.expired(); }));
}

}  // namespace quillo::simulated
