// GET /functions/v1/get-usage and get-config: what was used, and what there is to buy.
#pragma once

#include "service/accounts.h"
#include "service/http_server.h"
#include "service/metering.h"
#include "service/plans.h"

namespace quillo::service {

// All outlive the server.
struct PlanParts {
  Accounts& accounts;
  Metering& metering;
  const PlanCatalogue& plans;
};

void addPlanRoutes(HttpServer& server, PlanParts parts);

}  // namespace quillo::service
