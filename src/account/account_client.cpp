#include "account/account_client.h"

#include <utility>
#include <variant>

#include "account/auth_error_texts.h"

namespace quillo {

using namespace std::chrono_literals;

AccountClient::AccountClient(URLSessions& sessions, Backend backend)
    : backend_(std::move(backend)),
      session_(sessions.make({.timeoutForRequest = 30s,
                              .timeoutForResource = 60s,
                              .whenOffline = WhenOffline::waitForConnectivity})) {}

Task<HTTPResponse> AccountClient::send(AccountRequest request) {
  auto response = co_await session_->data(build(request));
  if (!response) throw response.error();
  auto* http = std::get_if<HTTPResponse>(&*response);
  if (!http) throw InvalidResponseError();
  co_return std::move(*http);
}

URLRequest AccountClient::build(const AccountRequest& request) const {
  URLRequest built{.url = backend_.projectRoot + request.path, .method = request.method};
  built.timeout = 60s;
  built.headers.emplace_back("apikey", backend_.anonymousKey);
  if (request.body) {
    built.headers.emplace_back("Content-Type", "application/json");
    built.body = encodeJson(*request.body);
  }
  if (request.accessToken)
    built.headers.emplace_back("Authorization", "Bearer " + *request.accessToken);
  return built;
}

}  // namespace quillo
