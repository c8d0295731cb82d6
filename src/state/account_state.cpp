#include "state/account_state.h"

#include <exception>
#include <utility>

#include "state/device_identity.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration shortestVisibleRefresh = 600ms;

constexpr const char* apiKeyKey = "mac.apiKey";
constexpr const char* userIdKey = "mac.userId";
constexpr const char* maximumRecordingKey = "plan.maxRecordingSeconds";

}  // namespace

AccountState::AccountState(SettingRegistry& registry, MainThread& mainThread, Clock& clock,
                           Random& random, Log& log)
    : SettingGroup(registry), mainThread_(mainThread), clock_(clock), random_(random), log_(log) {}

std::string AccountState::deviceId() const {
  return deviceIdentity(defaults(), clock_, random_);
}

std::string AccountState::apiKey() const {
  const std::string stored = defaults().text(apiKeyKey).value_or("");
  return stored.empty() ? "mx_" + deviceId() : stored;
}

ClientIdentity AccountState::identity() const {
  return {.apiKey = apiKey(), .deviceId = deviceId()};
}

void AccountState::clearAccountState() {
  defaults().remove(userIdKey);
  defaults().remove(apiKeyKey);
  plan = "free";
  usage = std::nullopt;
  accountCleared_ = std::monostate();
}

Subscription AccountState::observeAccountCleared(std::function<void()> observer) const {
  return accountCleared_.observe([observer = std::move(observer)](std::monostate) { observer(); });
}

// --- Usage ---

Task<> AccountState::refreshUsage() {
  isRefreshingUsage = true;
  usageError = std::nullopt;
  const MonotonicTime began = mainThread_.now();
  const std::optional<std::string> user = defaults().text(userIdKey);
  try {
    UsageData reply = co_await usageSource_();
    // After a sign-out, or for another user, it tells of somebody else's plan.
    if (defaults().text(userIdKey) == user) takeUsage(std::move(reply));
  } catch (...) {
    log_.log("usage", "refresh failed: " + describe(std::current_exception()));
    usageError = words("Usage could not be refreshed.");
  }
  const Duration taken = mainThread_.now() - began;
  // Cancelled or not, the refresh is over when the wait is.
  if (taken < shortestVisibleRefresh) co_await sleepFor(shortestVisibleRefresh - taken);
  isRefreshingUsage = false;
}

void AccountState::takeUsage(UsageData reply) {
  plan = reply.plan;
  const std::int64_t seconds = reply.limits.maxRecordingSeconds.value_or(0);
  if (seconds >= 1) defaults().setInteger(maximumRecordingKey, seconds);
  usage = std::move(reply);
}

}  // namespace quillo
