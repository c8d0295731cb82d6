// POST /functions/v1/submit-feedback: kept in the database.
#pragma once

#include "service/accounts.h"
#include "service/clock.h"
#include "service/database.h"
#include "service/http_server.h"

namespace quillo::service {

// All outlive the server.
struct FeedbackParts {
  Accounts& accounts;
  Database& database;
  Clock clock;
};

void addFeedbackRoute(HttpServer& server, FeedbackParts parts);

}  // namespace quillo::service
