#include "service/caller.h"

#include "service/plans.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

constexpr std::size_t maximumIdentifierBytes = 200;

std::string demandHeader(const HttpRequest& request, const std::string& name,
                         const std::string& spelling) {
  const auto value = request.header(name);
  if (!value) throw badRequest("The header " + spelling + " is missing.");
  if (value->size() > maximumIdentifierBytes)
    throw badRequest("The header " + spelling + " is too long.");
  return *value;
}

}  // namespace

Caller identifyCaller(const HttpRequest& request, Accounts& accounts) {
  const std::string key = demandHeader(request, "x-quillo-api-key", "X-Quillo-API-Key");
  const std::string deviceId = demandHeader(request, "x-quillo-device-id", "X-Quillo-Device-ID");
  std::string machine = request.header("x-quillo-hardware-id").value_or(deviceId);

  if (key == "mx_" + deviceId)
    return {CallerKind::guest, key, std::string(PlanCatalogue::freePlan), deviceId, machine};
  if (const auto who = accounts.authenticate(key))
    return {CallerKind::account, who->account.id, who->account.plan, deviceId, machine};
  throw ServiceError(401, "unauthorized", "Please sign in again.");
}

}  // namespace quillo::service
