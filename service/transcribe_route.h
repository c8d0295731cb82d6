// POST /functions/v1/transcribe: a recording to words.
#pragma once

#include "service/accounts.h"
#include "service/dictionary.h"
#include "service/http_server.h"
#include "service/metering.h"
#include "service/plans.h"
#include "service/recogniser_pool.h"

namespace quillo::service {

// All outlive the server.
struct TranscribeParts {
  Accounts& accounts;
  Metering& metering;
  const PlanCatalogue& plans;
  const Dictionaries& dictionaries;
  RecogniserPool& recognisers;
};

void addTranscribeRoute(HttpServer& server, TranscribeParts parts);

}  // namespace quillo::service
