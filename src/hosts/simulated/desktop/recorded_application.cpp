#include "hosts/simulated/desktop/recorded_application.h"

namespace quillo::simulated {

RecordedApplication::RecordedApplication(MainThread& mainThread) : mainThread_(mainThread) {
  bundle_.bundleIdentifier = "com.murmex.mac";
  bundle_.shortVersion = "1.0";
  bundle_.version = "100";
  bundle_.bundlePath = "/Applications/Quillo.app";
}

void RecordedApplication::activateIgnoringOtherApps() {
  ++activations_;
  if (activate_) activate_();
}

void RecordedApplication::orderMainWindowsFront() {
  if (windows_.orderFront) windows_.orderFront();
}

void RecordedApplication::terminate() {
  mainThread_.post([this] {
    if (isTerminated_) return;
    isTerminated_ = true;
    if (events_.willTerminate) events_.willTerminate();
  });
}

void RecordedApplication::tell(std::function<void()> Events::* event) {
  mainThread_.post([this, event] {
    if (const auto& receiver = events_.*event) receiver();
  });
}

void RecordedApplication::becomeActive() {
  tell(&Events::didBecomeActive);
}

void RecordedApplication::reopen() {
  tell(&Events::reopen);
}

}  // namespace quillo::simulated
