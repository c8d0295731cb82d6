#include "simulation/world/observed_ports.h"

namespace quillo::sim {

void ObservedLog::log(std::string_view category, std::string_view message) {
  trace_.tell(events::Log{std::string(category), std::string(message)});
  below_.log(category, message);
}

void ObservedSystemLog::write(std::string_view line) {
  trace_.tell(events::SystemLog{std::string(line)});
  below_.write(line);
}
void ObservedSystemLog::printToStandardOutput(std::string_view line) {
  trace_.tell(events::StandardOutput{std::string(line)});
  below_.printToStandardOutput(line);
}

// --- Files ---

Result<void, FileFailure> ObservedFiles::writeAtomically(const FilePath& path, const Bytes& bytes) {
  const auto done = below_.writeAtomically(path, bytes);
  trace_.tell(events::FileWritten{path.string(), bytes.size(), done.has_value()});
  return done;
}

Result<void, FileFailure> ObservedFiles::move(const FilePath& from, const FilePath& to) {
  const auto done = below_.move(from, to);
  trace_.tell(events::FileMoved{from.string(), to.string(), done.has_value()});
  return done;
}

Result<void, FileFailure> ObservedFiles::remove(const FilePath& path) {
  const auto done = below_.remove(path);
  trace_.tell(events::FileRemoved{path.string(), path.filename().string(), done.has_value()});
  return done;
}

// --- Network ---

namespace {

std::string pathOf(const std::string& url) {
  const std::size_t host = url.find("://");
  const std::size_t path = host == std::string::npos ? 0 : url.find('/', host + 3);
  return path == std::string::npos ? url : url.substr(path);
}

events::Reply replyOf(const Result<URLResponse, URLError>& reply) {
  if (!reply) return {.code = reply.error().code(), .error = reply.error().description()};
  const auto* http = std::get_if<HTTPResponse>(&*reply);
  if (!http) return {.error = "not HTTP"};
  return {.response = http};
}

}  // namespace

class ObservedNetwork::Session final : public URLSession {
 public:
  Session(std::unique_ptr<URLSession> below, ObservedNetwork& network)
      : below_(std::move(below)), network_(network) {}

  Task<Result<URLResponse, URLError>> data(URLRequest request) override {
    const int number = ++network_.requests_;
    const std::string path = pathOf(request.url);
    network_.trace_.tell(events::Request{number, path, &request});
    auto response = co_await below_->data(std::move(request));
    events::Reply reply = replyOf(response);
    reply.number = number;
    reply.path = path;
    network_.trace_.tell(std::move(reply));
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

Result<void, KeyPosterFailure> ObservedKeyPoster::post(std::int64_t keyCode, KeyDirection direction,
                                                       std::uint64_t flags, std::int64_t userData) {
  events::Key key{keyCode, direction, flags, front_(), clipboard_()};
  const auto posted = below_.post(keyCode, direction, flags, userData);
  key.posted = posted.has_value();
  trace_.tell(std::move(key));
  return posted;
}

void ObservedPasteboard::clearContents() {
  below_.clearContents();
  trace_.tell(events::Clipboard{.by = "Quillo"});
}

Result<void, PasteboardFailure> ObservedPasteboard::writeItems(
    const std::vector<PasteboardItem>& items) {
  const auto done = below_.writeItems(items);
  trace_.tell(
      events::Clipboard{.by = "Quillo", .contents = contentsOf(items), .done = done.has_value()});
  return done;
}

Result<void, WorkspaceFailure> ObservedWorkspace::activate(const RunningApplication& application) {
  const auto accepted = below_.activate(application);
  trace_.tell(events::Activate{application.localizedName.value_or(""), accepted.has_value()});
  return accepted;
}

std::size_t ObservedAlerts::runModal(const Alert& alert) {
  trace_.tell(events::Alert{alert.messageText.english(), alert.informativeText.english(),
                            english(alert.buttons)});
  const std::size_t button = below_.runModal(alert);
  trace_.tell(events::AlertAnswered{button});
  return button;
}

void ObservedSounds::play(std::string_view name) {
  trace_.tell(events::Sound{std::string(name)});
  below_.play(name);
}

}  // namespace quillo::sim
