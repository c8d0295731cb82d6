#include "service/feedback_route.h"

#include "base/text.h"
#include "service/caller.h"
#include "service/cryptography.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

HttpReply submit(const HttpRequest& request, const FeedbackParts& parts) {
  // Feedback is welcome from anybody; a caller who names itself must be who it says.
  const bool named = request.header("x-quillo-api-key").has_value();
  const auto caller = named ? std::optional(identifyCaller(request, parts.accounts)) : std::nullopt;
  const auto body = JsonReader::parseObject(request.body);
  const std::string message = body.text("message");
  const std::string mode = body.text("mode");
  if (isBlank(message)) throw badRequest("The message is empty.");
  if (mode != "issue" && mode != "feedback")
    throw badRequest("The mode is neither issue nor feedback.");

  auto transaction = parts.database.begin();
  transaction.run(
      "INSERT INTO feedback (id, received_at, user_id, device_id, message, mode, request_type, "
      "app, os) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {newIdentifier(), epochSeconds(parts.clock()),
       sqlText(caller ? std::optional(caller->userId) : std::nullopt),
       sqlText(caller ? std::optional(caller->deviceId) : std::nullopt), message, mode,
       body.text("requestType"), body.text("app"), body.text("os")});
  transaction.commit();
  return {};
}

}  // namespace

void addFeedbackRoute(HttpServer& server, FeedbackParts parts) {
  server.route("POST", "/functions/v1/submit-feedback",
               [parts](const HttpRequest& request) { return submit(request, parts); });
}

}  // namespace quillo::service
