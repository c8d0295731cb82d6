#include "app/account_feature.h"

#include "api/fresh_auth.h"

namespace quillo {

AccountFeature::AccountFeature(const HostPorts& ports, MacAppState& state, const Backend& backend)
    : api_(ports.mainThread, ports.network, ports.machine, ports.random, ports.systemLog, backend),
      tokens_(ports.keychain, ports.log),
      history_(state, state, ports.userDefaults, ports.files, ports.queues, ports.clock,
               ports.random),
      auth_(ports.mainThread, ports.network, ports.userDefaults, tokens_, state, history_,
            ports.clock, ports.log, backend) {
  state.setUsageSource([this, &state] {
    return withFreshAuth<UsageData>(auth_,
                                    [this, &state] { return api_.getUsage(state.identity()); });
  });
}

}  // namespace quillo
