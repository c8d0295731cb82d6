// Requests to the account service.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "api/backend.h"
#include "base/json.h"
#include "base/task.h"
#include "platform/url_session.h"

namespace quillo {

struct AccountRequest {
  std::string method;
  std::string path;  // below the project root, with its query
  std::optional<Json> body{};
  std::optional<std::string> accessToken{};
};

// One session of its own, apart from the dictation API's. Main thread.
class AccountClient {
 public:
  AccountClient(URLSessions& sessions, Backend backend);

  // Throws URLError, and InvalidResponseError for a reply that is not HTTP.
  Task<HTTPResponse> send(AccountRequest request);

 private:
  URLRequest build(const AccountRequest& request) const;

  Backend backend_;
  std::unique_ptr<URLSession> session_;
};

}  // namespace quillo
