#include "core/dictation_failures.h"

#include <array>

#include "api/api_error.h"
#include "base/json.h"
#include "base/text.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

constexpr std::string_view generalMessage = "Something went wrong. Please try again.";
constexpr std::string_view generalLimitMessage =
    "You've reached your plan limit. Upgrade your plan or try again later.";

struct TitleRule {
  std::string_view words;
  std::string_view title;
};

// The first that is found in the message decides.
constexpr std::array titleRules = {
    TitleRule{"timed out", "Request timed out"},      TitleRule{"connection", "Connection problem"},
    TitleRule{"internet", "Connection problem"},      TitleRule{"too large", "Recording too large"},
    TitleRule{"maximum size", "Recording too large"}, TitleRule{"sign in", "Sign in required"},
    TitleRule{"speech", "No speech detected"},
};
constexpr std::string_view generalTitle = "Couldn't transcribe";

// The sentence that an error has of its own, if it has one.
std::optional<std::string> ownSentence(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const Error& known) {
    return known.errorDescription();
  } catch (...) {
    return std::nullopt;
  }
}

bool saysLimit(const Json& reply) {
  const auto error = lenientText(reply, "error");
  return reply.contains("limitType") || (error && containsIgnoringCase(*error, "limit"));
}

}  // namespace

bool isCancellation(const std::exception_ptr& error) {
  if (!error) return false;
  try {
    std::rethrow_exception(error);
  } catch (const CancellationError&) {
    return true;
  } catch (const SystemError& system) {
    return system.domain() == urlErrorDomain &&
           system.code() == static_cast<int>(URLErrorCode::cancelled);
  } catch (const APIError& api) {
    return api.kind() == APIError::Kind::networkError && isCancellation(api.underlying());
  } catch (...) {
    return false;
  }
}

std::optional<PlanLimit> planLimitInfo(const std::exception_ptr& error) {
  std::string body;
  try {
    std::rethrow_exception(error);
  } catch (const APIError& api) {
    if (api.kind() != APIError::Kind::serverError) return std::nullopt;
    body = api.body();
  } catch (...) {
    return std::nullopt;
  }
  const std::optional<Json> reply = parseJson(body);
  if (!reply || !reply->is_object() || !saysLimit(*reply)) return std::nullopt;
  return PlanLimit{
      .message = lenientText(*reply, "message").value_or(std::string(generalLimitMessage)),
      .scope =
          lenientText(*reply, "limitScope") == "device" ? LimitScope::device : LimitScope::account,
  };
}

void showLimitAlert(const PlanLimit& limit, Application& application, Alerts& alerts,
                    Navigator& navigator) {
  const Alerts::Alert alert = {
      .messageText = limit.scope == LimitScope::device ? "This Mac's free limit reached"
                                                       : "Plan limit reached",
      .informativeText = limit.message,
      .buttons = {"View Plans", "Not now"},
  };
  application.activateIgnoringOtherApps();
  if (alerts.runModal(alert) == 0) navigator.openPlans();
}

std::string userMessage(const std::exception_ptr& error) {
  const auto sentence = ownSentence(error);
  return sentence && !sentence->empty() ? *sentence : std::string(generalMessage);
}

std::string_view statusTitle(std::string_view message) {
  for (const TitleRule& rule : titleRules) {
    if (containsIgnoringCase(message, rule.words)) return rule.title;
  }
  return generalTitle;
}

}  // namespace quillo
