#include "simulation/world/observed_ports.h"

#include "platform/pasteboard.h"

namespace quillo::sim {

void ObservedLog::log(std::string_view category, std::string_view message) {
  trace_.tell("log", {{"category", category}, {"message", message}});
  below_.log(category, message);
}

void ObservedSystemLog::write(std::string_view line) {
  trace_.tell("systemLog", {{"line", line}});
  below_.write(line);
}
void ObservedSystemLog::printToStandardOutput(std::string_view line) {
  trace_.tell("standardOutput", {{"line", line}});
  below_.printToStandardOutput(line);
}

// --- Files ---

bool ObservedFiles::writeAtomically(const FilePath& path, const Bytes& bytes) {
  const bool done = below_.writeAtomically(path, bytes);
  trace_.tell("fileWritten", {{"path", path.string()}, {"bytes", bytes.size()}, {"done", done}});
  return done;
}

bool ObservedFiles::move(const FilePath& from, const FilePath& to) {
  const bool done = below_.move(from, to);
  trace_.tell("fileMoved", {{"path", from.string()}, {"to", to.string()}, {"done", done}});
  return done;
}

bool ObservedFiles::remove(const FilePath& path) {
  const bool done = below_.remove(path);
  trace_.tell("fileRemoved",
              {{"path", path.string()}, {"file", path.filename().string()}, {"done", done}});
  return done;
}

// --- Network ---

namespace {

std::string headerOf(const URLRequest& request, std::string_view name) {
  for (const auto& [field, value] : request.headers)
    if (field == name) return value;
  return "";
}

std::string pathOf(const std::string& url) {
  const std::size_t host = url.find("://");
  const std::size_t path = host == std::string::npos ? 0 : url.find('/', host + 3);
  return path == std::string::npos ? url : url.substr(path);
}

Json partsOf(const URLRequest& request) {
  const std::string type = headerOf(request, "Content-Type");
  if (type.starts_with("multipart/form-data")) return formParts(type, request.body);
  return parseJson(request.body).value_or(Json(request.body));
}

Json headersOf(const URLRequest& request) {
  Json headers = Json::object();
  for (const auto& [name, value] : request.headers) headers[name] = value;
  return headers;
}

Json describeFailure(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const SystemError& failure) {
    return {{"code", failure.code()}, {"error", failure.description()}};
  } catch (const std::exception& failure) {
    return {{"error", failure.what()}};
  }
}

Json describeResponse(const URLResponse& response) {
  const auto* http = std::get_if<HTTPResponse>(&response);
  if (!http) return {{"error", "not HTTP"}};
  return {{"status", http->status}, {"body", parseJson(http->body).value_or(Json(http->body))}};
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

class ObservedNetwork::Session final : public URLSession {
 public:
  Session(std::unique_ptr<URLSession> below, ObservedNetwork& network)
      : below_(std::move(below)), network_(network) {}

  Task<URLResponse> data(URLRequest request) override {
    const int number = ++network_.requests_;
    const std::string path = pathOf(request.url);
    network_.trace_.tell("request", {{"number", number},
                                     {"method", request.method},
                                     {"path", path},
                                     {"headers", headersOf(request)},
                                     {"parts", partsOf(request)}});
    URLResponse response;
    std::exception_ptr error;
    try {
      response = co_await below_->data(std::move(request));
    } catch (...) {
      error = std::current_exception();
    }
    Json reply = {{"number", number}, {"path", path}};
    reply.update(error ? describeFailure(error) : describeResponse(response));
    network_.trace_.tell("reply", std::move(reply));
    if (error) std::rethrow_exception(error);
    co_return response;
  }

 private:
  std::unique_ptr<URLSession> below_;
  ObservedNetwork& network_;
};

std::unique_ptr<URLSession> ObservedNetwork::make(URLSessionConfiguration configuration) {
  return std::make_unique<Session>(below_.make(configuration), *this);
}

// --- Keys, clipboard, applications ---

bool ObservedKeyPoster::post(std::int64_t keyCode, KeyDirection direction, std::uint64_t flags,
                             std::int64_t userData) {
  Json fields = {{"keyCode", keyCode},
                 {"direction", direction == KeyDirection::down ? "down" : "up"},
                 {"flags", flags},
                 {"front", front_()},
                 {"clipboard", clipboard_()}};
  const bool posted = below_.post(keyCode, direction, flags, userData);
  fields["posted"] = posted;
  trace_.tell("key", std::move(fields));
  return posted;
}

Json describeItems(const std::vector<PasteboardItem>& items) {
  Json types = Json::array();
  Json text = nullptr;
  for (const PasteboardItem& item : items) {
    for (const auto& [type, bytes] : item.representations) {
      types.push_back(type);
      if (type == pasteboardTypeString && text.is_null()) text = bytes;
    }
  }
  return {{"types", types}, {"text", text}};
}

Json describeOffered(const std::vector<simulated::OfferedItem>& items) {
  Json types = Json::array();
  Json text = nullptr;
  for (const simulated::OfferedItem& item : items) {
    for (const simulated::OfferedData& data : item) {
      types.push_back(data.type);
      if (data.type == pasteboardTypeString && text.is_null()) text = data.bytes;
    }
  }
  return {{"types", types}, {"text", text}};
}

void ObservedPasteboard::clearContents() {
  below_.clearContents();
  trace_.tell("clipboard", {{"by", "Quillo"}, {"types", Json::array()}, {"text", nullptr}});
}

bool ObservedPasteboard::writeItems(const std::vector<PasteboardItem>& items) {
  const bool done = below_.writeItems(items);
  Json fields = {{"by", "Quillo"}};
  fields.update(describeItems(items));
  if (!done) fields["done"] = false;
  trace_.tell("clipboard", std::move(fields));
  return done;
}

bool ObservedWorkspace::activate(const RunningApplication& application) {
  const bool accepted = below_.activate(application);
  trace_.tell("activate",
              {{"application", application.localizedName.value_or("")}, {"accepted", accepted}});
  return accepted;
}

std::size_t ObservedAlerts::runModal(const Alert& alert) {
  trace_.tell(
      "alert",
      {{"title", alert.messageText}, {"text", alert.informativeText}, {"buttons", alert.buttons}});
  const std::size_t button = below_.runModal(alert);
  trace_.tell("alertAnswered", {{"button", button}});
  return button;
}

void ObservedSounds::play(std::string_view name) {
  trace_.tell("sound", {{"name", name}});
  below_.play(name);
}

}  // namespace quillo::sim
