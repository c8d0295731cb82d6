// Requests and replies as the routes see them, free of the HTTP library.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/json.h"

namespace quillo::service {

// One part of a multipart/form-data body (RFC 7578).
struct FormPart {
  std::string content;
  std::string filename;
};

struct HttpRequest {
  std::string method;
  std::string path;
  std::map<std::string, std::string> query;
  std::map<std::string, std::string> headers;  // names in lower case
  std::string body;                            // empty for a form
  std::map<std::string, FormPart> form;

  // `name` in lower case; an empty header reads as absent.
  std::optional<std::string> header(const std::string& name) const;
  // The token of "Authorization: Bearer <token>" (RFC 6750).
  std::optional<std::string> bearerToken() const;
};

struct HttpReply {
  int status = 200;
  Json body = Json::object();
};

}  // namespace quillo::service
