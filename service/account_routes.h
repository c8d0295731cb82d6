// The account service: /auth/v1 and the deletion of an account.
#pragma once

#include "service/accounts.h"
#include "service/http_server.h"

namespace quillo::service {

// `accounts` outlives the server.
void addAccountRoutes(HttpServer& server, Accounts& accounts);

}  // namespace quillo::service
