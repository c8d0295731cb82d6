#include "simulation/faults/faults.h"

#include <algorithm>

#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

constexpr Duration shortestFault = 500ms;
constexpr Duration longestFault = 20min;
constexpr Duration longOfShortFaults = 30s;
// A fault of the service meets some requests while it lasts, or nearly all.
constexpr double sharesOfRequests[] = {0.4, 0.95};

}  // namespace

Faults::Faults(World& world, simulated::SeededRandom random, std::vector<FaultKind> chosen,
               int budget)
    : scene_{.world = world, .random = random, .note = [this](FaultKind kind) { note(kind); }},
      chosen_(std::move(chosen)),
      budget_(budget) {
  world.service().setWhim([this](Endpoint endpoint, const HostedService::Request& request) {
    return whim(endpoint, request);
  });
  world.trace().watch([this](const Event& event) { copyDuringPaste(event); });
}

void Faults::strike() {
  if (scene_.isOver || chosen_.empty() || budget_ == 0) return;
  begin(faultOf(chosen_[scene_.random.below(chosen_.size())]));
}

void Faults::begin(const Fault& fault) {
  if (lasts(fault.kind)) return;
  const Made made = fault.make ? fault.make(scene_) : Made::yet;
  if (made == Made::nothing) return;
  if (made == Made::done) note(fault.kind);
  --budget_;
  tellFault(scene_.world, fault.kind);
  lasting_.insert(fault.kind);
  simulated::SeededRandom& random = scene_.random;
  shareOfRequests_ = sharesOfRequests[random.below(std::size(sharesOfRequests))];
  scene_.desktop().after(
      random.between(shortestFault, random.chance(0.5) ? longestFault : longOfShortFaults),
      [this, &fault] { heal(fault); });
}

void Faults::heal(const Fault& fault) {
  if (lasting_.erase(fault.kind) == 0) return;
  if (fault.heal) fault.heal(scene_);
  tellFault(scene_.world, fault.kind, false);
}

void Faults::end() {
  scene_.isOver = true;
  while (!lasting_.empty()) heal(faultOf(*lasting_.begin()));
}

void Faults::copyDuringPaste(const Event& event) {
  if (!lasts(FaultKind::userCopiesMeanwhile) || !isStatus(event, "Pasting")) return;
  scene_.desktop().after(scene_.random.between(0ms, 450ms), [this] {
    if (scene_.isOver) return;
    note(FaultKind::userCopiesMeanwhile);
    scene_.world.copy({{{.type = pasteboardTypeString,
                         .bytes = "copied meanwhile " + std::to_string(++scene_.copies)}}},
                      "");
  });
}

std::optional<simulated::Answer> Faults::whim(Endpoint endpoint,
                                              const HostedService::Request& request) {
  for (const Fault& fault : allFaults()) {
    const bool isMet = std::ranges::find(fault.meets, endpoint) != fault.meets.end();
    if (!isMet || !lasts(fault.kind) || !scene_.random.chance(shareOfRequests_)) continue;
    note(fault.kind);
    const AskedOfService asked{endpoint, request, scene_.random.between(10ms, 2s)};
    return fault.answer(scene_, asked);
  }
  return std::nullopt;
}

}  // namespace quillo::sim
