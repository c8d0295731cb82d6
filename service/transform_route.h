// POST /functions/v1/transform: Fix, Improve, translate.
#pragma once

#include "service/accounts.h"
#include "service/http_server.h"
#include "service/metering.h"
#include "service/text_transform.h"

namespace quillo::service {

// All outlive the server.
struct TransformParts {
  Accounts& accounts;
  Metering& metering;
  const TextTransform& transform;
};

void addTransformRoute(HttpServer& server, TransformParts parts);

}  // namespace quillo::service
