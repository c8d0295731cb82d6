// Who the program is to the service, and what the service last said about the plan.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "api/client_identity.h"
#include "api/records.h"
#include "base/log.h"
#include "base/published.h"
#include "base/task.h"
#include "base/words.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "state/setting_group.h"

namespace quillo {

// Main thread only.
class AccountState : private SettingGroup {
 public:
  AccountState(SettingRegistry& registry, MainThread& mainThread, Clock& clock, Random& random,
               Log& log);

  // --- Usage, in memory only ---

  Published<std::optional<UsageData>> usage;
  Published<bool> isRefreshingUsage;
  Published<std::optional<Words>> usageError;

  Setting<std::string> plan = text("plan", "free");

  // --- Identity ---

  // Made at the first call, and stored.
  std::string deviceId() const;
  // The signed-in user's key, else one made of the device's identity.
  std::string apiKey() const;
  ClientIdentity identity() const;
  // Forgets the user, as sign-out does. Settings and writing material stay.
  void clearAccountState();
  // Runs after each clearAccountState().
  [[nodiscard]] Subscription observeAccountCleared(std::function<void()> observer) const;

  // --- Usage ---

  // Asks the service for the usage of identity().
  using UsageSource = std::function<Task<UsageData>()>;
  void setUsageSource(UsageSource source) { usageSource_ = std::move(source); }
  // Never throws: a failure becomes `usageError`. Lasts at least 0.6 s, so that it can be seen,
  // unless the task is cancelled. Needs a usage source.
  Task<> refreshUsage();

 private:
  void takeUsage(UsageData reply);

  MainThread& mainThread_;
  Clock& clock_;
  Random& random_;
  Log& log_;
  UsageSource usageSource_;
  Published<std::monostate> accountCleared_;
};

}  // namespace quillo
