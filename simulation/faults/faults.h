// Faults that strike now and then, and heal by themselves.
#pragma once

#include <map>
#include <set>
#include <vector>

#include "simulation/faults/fault.h"

namespace quillo::sim {

class Faults {
 public:
  // Never more than `budget` faults, of the `chosen` kinds.
  Faults(World& world, simulated::SeededRandom random, std::vector<FaultKind> chosen, int budget);
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;

  // One of the chosen kinds begins now, and heals by itself after a while.
  void strike();
  // Everything heals, and nothing breaks any more.
  void end();

  // Whether such a fault lasts now.
  bool lasts(FaultKind kind) const { return lasting_.contains(kind); }
  // The fault had an effect.
  void note(FaultKind kind) { ++fired_[kind]; }
  // How often each kind had one.
  const std::map<FaultKind, int>& fired() const { return fired_; }

 private:
  void begin(const Fault& fault);
  void heal(const Fault& fault);
  void copyDuringPaste(const Event& event);
  std::optional<simulated::Answer> whim(Endpoint endpoint, const HostedService::Request& request);

  FaultScene scene_;
  std::vector<FaultKind> chosen_;
  int budget_;
  double shareOfRequests_ = 1;
  std::set<FaultKind> lasting_;
  std::map<FaultKind, int> fired_;
};

}  // namespace quillo::sim
