// What an error means to the user: a cancel, a plan limit, or a sentence with a short status.
#pragma once

#include <exception>
#include <optional>

#include "base/words.h"
#include "core/navigator.h"
#include "platform/alerts.h"
#include "platform/application.h"

namespace quillo {

// The user cancelled, however that came to be known.
bool isCancellation(const std::exception_ptr& error);

enum class LimitScope { account, device };

struct PlanLimit {
  Words message;
  LimitScope scope = LimitScope::account;
};

// The service's reply that the plan is used up; the HTTP status does not matter.
std::optional<PlanLimit> planLimitInfo(const std::exception_ptr& error);

// Tells the user about the limit and waits for the answer; opens the plans when that is wanted.
void showLimitAlert(const PlanLimit& limit, Application& application, Alerts& alerts,
                    Navigator& navigator);

// The sentence for the user.
Words userMessage(const std::exception_ptr& error);

// The short status that goes with a sentence, by its English words.
Literal statusTitle(const Words& message);

}  // namespace quillo
