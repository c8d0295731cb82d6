#include "hosts/simulated/simulated_desktop.h"

namespace quillo::simulated {

SimulatedDesktop::SimulatedDesktop(std::uint64_t seed)
    : seed_(seed),
      framesAtStart_(liveFrameCount()),
      random_(seed, "program"),
      workspace_(mainThread_, timeline_, pasteboard_, SeededRandom(seed, "workspace"),
                 {application_.bundle().bundleIdentifier, "Quillo"}),
      hotKeys_(route("hot keys")),
      eventTaps_(mainThread_, timeline_, route("event tap"), permissions_),
      eventMonitors_(route("global monitors"), route("local monitors"), permissions_),
      hidKeyboards_(route("HID"), permissions_),
      keyboard_(timeline_, workspace_, {eventTaps_, hotKeys_, eventMonitors_, hidKeyboards_}),
      pointer_(route("mouse"), workspace_, screens_, panels_) {
  connectApplication();
}

SimulatedDesktop::~SimulatedDesktop() {
  abandonTasks();
}

KeyRoute SimulatedDesktop::route(std::string_view name) {
  return KeyRoute(mainThread_, timeline_, SeededRandom(seed_, name));
}

// The program under test is one of those that can come to the front.
void SimulatedDesktop::connectApplication() {
  application_.setWindows({.hasVisible = [this] { return windows_.hasVisible(); },
                           .orderFront = [this] { windows_.orderFront(); }});
  application_.setActivate([this] { workspace_.activate(workspace_.self().identity()); });
  application_.setProcessIdentifier(workspace_.self().process());
  ownActivation_ = workspace_.observeActivation([this](const RunningApplication& activated) {
    if (activated == workspace_.self().identity()) application_.becomeActive();
  });
}

}  // namespace quillo::simulated
