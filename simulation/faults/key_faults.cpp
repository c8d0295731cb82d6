#include "simulation/faults/key_faults.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using simulated::KeyRoute;

// Less than the debounce of the chords, which is all that keeps the routes of one press together.
constexpr Duration slowestRoute = 200ms;
// Every key waits for the taps in turn, so that their time adds up.
constexpr Duration slowestTap = 10ms;

std::vector<KeyRoute*> someRoutes(FaultScene& scene) {
  simulated::SimulatedDesktop& desktop = scene.desktop();
  std::vector<KeyRoute*> routes = {&desktop.hidKeyboards().route(), &desktop.hotKeys().route(),
                                   &desktop.eventMonitors().globalRoute(),
                                   &desktop.eventMonitors().localRoute(),
                                   &desktop.eventTaps().route()};
  if (scene.random.chance(0.7)) return {routes[scene.random.below(routes.size())]};
  return routes;
}

void disturb(FaultScene& scene, FaultKind kind, const auto& change) {
  auto& disturbed = scene.routes[kind];
  disturbed.clear();
  for (KeyRoute* route : someRoutes(scene)) {
    disturbed.push_back({route, route->counts()});
    change(*route);
  }
}

void calm(FaultScene& scene, FaultKind kind, int KeyRoute::Counts::* count, const auto& change) {
  for (const FaultScene::DisturbedRoute& each : scene.routes[kind]) {
    change(*each.route);
    if (each.route->counts().*count > each.before.*count) scene.note(kind);
  }
}

}  // namespace

Made refuseRoutes(FaultScene& scene) {
  disturb(scene, FaultKind::keyRouteRefused, [](KeyRoute& route) { route.setRefused(true); });
  return Made::done;
}
void admitRoutes(FaultScene& scene) {
  for (const auto& each : scene.routes[FaultKind::keyRouteRefused]) each.route->setRefused(false);
}

Made slowRoutes(FaultScene& scene) {
  disturb(scene, FaultKind::keyRouteSlow, [&scene](KeyRoute& route) {
    const bool isTap = &route == &scene.desktop().eventTaps().route();
    route.setLatency(scene.random.between(1ms, isTap ? slowestTap : slowestRoute));
  });
  return Made::yet;
}
void speedRoutes(FaultScene& scene) {
  calm(scene, FaultKind::keyRouteSlow, &KeyRoute::Counts::carried,
       [](KeyRoute& route) { route.setLatency(0ms); });
}

Made loseInRoutes(FaultScene& scene) {
  disturb(scene, FaultKind::keyRouteLossy,
          [&scene](KeyRoute& route) { route.setLoss(scene.random.chance(0.5) ? 0.1 : 0.5); });
  return Made::yet;
}
void mendRoutes(FaultScene& scene) {
  calm(scene, FaultKind::keyRouteLossy, &KeyRoute::Counts::lost,
       [](KeyRoute& route) { route.setLoss(0); });
}

Made doubleInRoutes(FaultScene& scene) {
  disturb(scene, FaultKind::keyRouteDoubled,
          [](KeyRoute& route) { route.setDuplication(0.5, 0ms); });
  return Made::yet;
}
void singleRoutes(FaultScene& scene) {
  calm(scene, FaultKind::keyRouteDoubled, &KeyRoute::Counts::doubled,
       [](KeyRoute& route) { route.setDuplication(0); });
}

Made takeChord(FaultScene& scene) {
  using namespace hot_key_modifiers;
  struct Chord {
    std::uint32_t keyCode;
    std::uint32_t modifiers;
  };
  constexpr Chord chords[] = {
      {49, control | option}, {9, control | command}, {5, control}, {38, control}};
  const Chord chord = chords[scene.random.below(std::size(chords))];
  scene.takenChord = scene.desktop().hotKeys().takeByAnotherProgram(chord.keyCode, chord.modifiers);
  return scene.takenChord ? Made::done : Made::nothing;
}

}  // namespace quillo::sim
