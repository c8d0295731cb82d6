// What can break around the program, how it is made, and how it heals: a row of one table each.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "hosts/simulated/time/seeded_random.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// Where faults happen, and what they need to heal again.
struct FaultScene {
  struct DisturbedRoute {
    simulated::KeyRoute* route;
    simulated::KeyRoute::Counts before;
  };

  World& world;
  simulated::SeededRandom random;
  std::function<void(FaultKind)> note;  // the fault had an effect
  bool isOver = false;                  // nothing breaks any more
  int copies = 0;                       // that another program made
  std::shared_ptr<void> takenChord{};
  std::optional<RunningApplication> quit{};
  std::map<FaultKind, simulated::Microphone*> microphones{};
  std::map<FaultKind, std::vector<DisturbedRoute>> routes{};

  simulated::SimulatedDesktop& desktop() { return world.desktop(); }
};

// A request of the program while a fault of the service lasts.
struct AskedOfService {
  Endpoint endpoint;
  const HostedService::Request& request;
  Duration soon;  // a time in which a service may well answer
};

enum class Made {
  nothing,  // there is nothing to break now
  yet,      // it will have its effect later, or when it meets somebody
  done,
};

struct Fault {
  FaultKind kind;
  std::string_view name;
  // Null for those that are asked for by whom they meet.
  Made (*make)(FaultScene&) = nullptr;
  // Null when there is nothing to undo.
  void (*heal)(FaultScene&) = nullptr;
  // Of the service: what it meets, while it lasts, and what is answered then.
  std::span<const Endpoint> meets{};
  simulated::Answer (*answer)(FaultScene&, const AskedOfService&) = nullptr;

  FaultIdentity identity() const { return {kind, name}; }
};

// In the order of their kinds.
std::span<const Fault> allFaults();
const Fault& faultOf(FaultKind kind);

// Something is broken as by a fault of this kind, or is not any more: the trace tells of it.
void tellFault(World& world, FaultKind kind, bool lasts = true);

}  // namespace quillo::sim
