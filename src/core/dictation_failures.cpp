#include "core/dictation_failures.h"

#include <array>

#include "api/api_error.h"
#include "base/json.h"
#include "base/text.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

constexpr Literal generalMessage = words("Something went wrong. Please try again.");
constexpr Literal generalLimitMessage =
    words("You've reached your plan limit. Upgrade your plan or try again later.");

struct TitleRule {
  std::string_view words;
  Literal title;
};

// The first that is found in the message decides.
constexpr std::array titleRules = {
    TitleRule{"timed out", words("Request timed out")},
    TitleRule{"connection", words("Connection problem")},
    TitleRule{"internet", words("Connection problem")},
    TitleRule{"too large", words("Recording too large")},
    TitleRule{"maximum size", words("Recording too large")},
    TitleRule{"sign in", words("Sign in required")},
    TitleRule{"speech", words("No speech detected")},
};
constexpr Literal generalTitle = words("Couldn't transcribe");

// The sentence that an error has of its own, if it has one.
std::optional<Words> ownSentence(const std::exception_ptr& error) {
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
  const auto message = lenientText(*reply, "message");
  return PlanLimit{
      .message = message ? asItStands(*message) : generalLimitMessage,
      .scope =
          lenientText(*reply, "limitScope") == "device" ? LimitScope::device : LimitScope::account,
  };
}

void showLimitAlert(const PlanLimit& limit, Application& application, Alerts& alerts,
                    Navigator& navigator) {
  const Alerts::Alert alert = {
      .messageText = limit.scope == LimitScope::device ? words("This Mac's free limit reached")
                                                       : words("Plan limit reached"),
      .informativeText = limit.message,
      .buttons = {words("View Plans"), words("Not now")},
  };
  application.activateIgnoringOtherApps();
  if (alerts.runModal(alert) == 0) navigator.openPlans();
}

Words userMessage(const std::exception_ptr& error) {
  const auto sentence = ownSentence(error);
  return sentence && !sentence->empty() ? *sentence : generalMessage;
}

Literal statusTitle(const Words& message) {
  const std::string said = message.english();
  for (const TitleRule& rule : titleRules) {
    if (containsIgnoringCase(said, rule.words)) return rule.title;
  }
  return generalTitle;
}

}  // namespace quillo
