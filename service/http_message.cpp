#include "service/http_message.h"

namespace quillo::service {

std::optional<std::string> HttpRequest::header(const std::string& name) const {
  const auto found = headers.find(name);
  if (found == headers.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

std::optional<std::string> HttpRequest::bearerToken() const {
  constexpr std::string_view scheme = "Bearer ";
  const auto value = header("authorization");
  if (!value || !value->starts_with(scheme)) return std::nullopt;
  return value->substr(scheme.size());
}

}  // namespace quillo::service
