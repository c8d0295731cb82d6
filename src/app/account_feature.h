// The account: the hosted service, the session with it, and what is kept for its user.
#pragma once

#include "account/auth_service.h"
#include "api/backend.h"
#include "api/murmex_api.h"
#include "app/host_ports.h"
#include "state/app_state.h"
#include "state/history_store.h"
#include "state/token_store.h"

namespace quillo {

// Main thread.
class AccountFeature {
 public:
  AccountFeature(const HostPorts& ports, MacAppState& state, const Backend& backend);

  MurmexAPI& api() { return api_; }
  MacHistoryStore& history() { return history_; }
  MacAuthService& auth() { return auth_; }

 private:
  MurmexAPI api_;
  MacKeychainTokenStore tokens_;
  MacHistoryStore history_;
  MacAuthService auth_;
};

}  // namespace quillo
