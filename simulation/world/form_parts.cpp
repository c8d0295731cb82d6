#include "simulation/world/form_parts.h"

#include <string_view>

namespace quillo::sim {
namespace {

std::string headerOf(const URLRequest& request, std::string_view name) {
  for (const auto& [field, value] : request.headers)
    if (field == name) return value;
  return "";
}

}  // namespace

Json formParts(const std::string& contentType, const Bytes& body) {
  const std::string boundary = "--" + contentType.substr(contentType.find("boundary=") + 9);
  Json parts = Json::object();
  for (std::size_t at = body.find(boundary); at != Bytes::npos;) {
    const std::size_t begin = at + boundary.size() + 2;
    const std::size_t end = body.find("\r\n" + boundary, begin);
    if (end == Bytes::npos) break;
    const std::size_t head = body.find("\r\n\r\n", begin);
    const auto quoted = [&](const std::string& name) {
      const std::size_t found = body.find(name + "=\"", begin);
      if (found == Bytes::npos || found > head) return std::string();
      const std::size_t first = found + name.size() + 2;
      return body.substr(first, body.find('"', first) - first);
    };
    const std::string filename = quoted("filename");
    parts[quoted("; name")] = filename.empty() ? body.substr(head + 4, end - head - 4) : filename;
    at = end + 2;
  }
  return parts;
}

Json partsOf(const URLRequest& request) {
  const std::string type = headerOf(request, "Content-Type");
  if (type.starts_with("multipart/form-data")) return formParts(type, request.body);
  return parseJson(request.body).value_or(Json(request.body));
}

}  // namespace quillo::sim
