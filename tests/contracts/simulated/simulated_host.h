// The part of a contract host that every simulated one has.
#pragma once

#include "contracts/support/contract_host.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo::contracts {

// `Host` is the host of one suite.
template <class Host>
class SimulatedHost : public Host {
 public:
  MainThread& mainThread() override { return desktop_.mainThread(); }
  bool runUntil(const std::function<bool()>& holds, Duration limit) override {
    return desktop_.runUntil(holds, limit);
  }

 protected:
  simulated::SimulatedDesktop desktop_;
};

}  // namespace quillo::contracts
