#include "service/http_server.h"

#include <dirent.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdlib>
#include <future>
#include <stdexcept>

#include "base/text.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

constexpr const char* loopback = "127.0.0.1";

// A connection holds a thread while it is kept alive.
constexpr std::size_t connectionThreads = 48;
// Longer than a dictation, so that the connection that was warmed up at its start still serves.
constexpr time_t keepAliveSeconds = 120;
constexpr int waitingConnections = 128;
constexpr std::size_t requestsOnAConnection = 1'000'000;

// The library would share the port with whoever listens there already (SO_REUSEPORT).
void claimPortAlone(int socket) {
  const int yes = 1;
  ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

// The port of this end of a TCP connection, or 0 for anything else.
int localPort(int descriptor) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
  return address.sin_family == AF_INET ? ntohs(address.sin_port) : 0;
}

// Ends the wait for a further request on every connection that this server has accepted. The
// library looks at its stop flag only between requests, and hides its connections.
void endIdleConnections(int port) {
  DIR* descriptors = ::opendir("/proc/self/fd");
  if (!descriptors) return;
  while (const dirent* entry = ::readdir(descriptors)) {
    const int descriptor = std::atoi(entry->d_name);
    if (localPort(descriptor) == port) ::shutdown(descriptor, SHUT_RD);
  }
  ::closedir(descriptors);
}

bool isReady(const std::future<void>& future, std::chrono::milliseconds wait) {
  return future.wait_for(wait) == std::future_status::ready;
}

HttpRequest requestFrom(const httplib::Request& from) {
  HttpRequest request{.method = from.method, .path = from.path, .body = from.body};
  for (const auto& [name, value] : from.params) request.query.emplace(name, value);
  for (const auto& [name, value] : from.headers) request.headers.emplace(lowercased(name), value);
  for (const auto& [name, part] : from.files)
    request.form.emplace(name, FormPart{part.content, part.filename});
  return request;
}

void write(const HttpReply& reply, httplib::Response& to) {
  to.status = reply.status;
  if (reply.status != 204) to.set_content(encodeJson(reply.body), "application/json");
}

HttpReply lengthRequired() {
  return ServiceError(411, "length_required", "The request has no Content-Length.").reply();
}

// What the library refuses by itself, before a route is asked.
ServiceError refusalOfStatus(int status) {
  switch (status) {
    case 413:
      return ServiceError(413, "payload_too_large", "The upload is too large.");
    case 404:
      return ServiceError(404, "not_found", "There is no such route.");
    default:
      return ServiceError(status, "bad_request", "The request could not be read.");
  }
}

// Takes more connections at once than the library's five.
class PatientServer : public httplib::Server {
 public:
  void lengthenQueue() { ::listen(svr_sock_, waitingConnections); }
};

// The port that it now has.
int bind(PatientServer& server, int wanted) {
  server.set_socket_options(claimPortAlone);
  server.set_tcp_nodelay(true);
  const bool bound = wanted != 0 && server.bind_to_port(loopback, wanted);
  const int port = wanted == 0 ? server.bind_to_any_port(loopback) : bound ? wanted : 0;
  if (port <= 0)
    throw std::runtime_error("cannot listen on 127.0.0.1 port " + std::to_string(wanted) +
                             ": it is in use");
  server.lengthenQueue();
  return port;
}

}  // namespace

struct HttpServer::Listener {
  PatientServer server;
  std::future<void> ended;
};

HttpServer::HttpServer(Settings settings)
    : settings_(std::move(settings)), listener_(std::make_unique<Listener>()) {
  PatientServer& server = listener_->server;
  server.set_keep_alive_max_count(requestsOnAConnection);
  server.set_keep_alive_timeout(keepAliveSeconds);
  server.set_payload_max_length(settings_.maximumBodyBytes);
  server.new_task_queue = [] { return new httplib::ThreadPool(connectionThreads); };
  receiveRequests();
  port_ = bind(server, settings_.port);
}

void HttpServer::receiveRequests() {
  httplib::Server& server = listener_->server;
  const auto serve = [this](const httplib::Request& from, httplib::Response& to) {
    const auto begin = std::chrono::steady_clock::now();
    write(reply(requestFrom(from)), to);
    const auto taken = std::chrono::steady_clock::now() - begin;
    if (settings_.served)
      settings_.served(from.method, from.path, to.status,
                       std::chrono::duration_cast<std::chrono::milliseconds>(taken));
  };
  // The library would read a body of no declared length to the end of the connection.
  server.set_pre_routing_handler([serve](const httplib::Request& from, httplib::Response& to) {
    using Outcome = httplib::Server::HandlerResponse;
    if (from.has_header("Transfer-Encoding")) {
      write(lengthRequired(), to);
    } else if (from.has_header("Content-Length")) {
      return Outcome::Unhandled;
    } else {
      serve(from, to);  // no body (RFC 9112, section 6.3)
    }
    return Outcome::Handled;
  });
  server.set_error_handler([](const httplib::Request&, httplib::Response& to) {
    if (to.body.empty()) write(refusalOfStatus(to.status).reply(), to);
  });
  server.Get(".*", serve);
  server.Post(".*", serve);
  server.Put(".*", serve);
  server.Patch(".*", serve);
  server.Delete(".*", serve);
  server.Options(".*", serve);
}

HttpServer::~HttpServer() {
  stop();
}

void HttpServer::route(const std::string& method, const std::string& path, Handler handler) {
  routes_[path][method] = std::move(handler);
}

void HttpServer::start() {
  listener_->ended =
      std::async(std::launch::async, [this] { listener_->server.listen_after_bind(); });
  // Stopping a listener that has not begun would be forgotten by it.
  while (!listener_->server.is_running() &&
         !isReady(listener_->ended, std::chrono::milliseconds(1)))
    continue;
}

void HttpServer::stop() {
  if (!listener_->ended.valid()) return;
  listener_->server.stop();
  // More than once, for a connection that was being accepted meanwhile.
  do endIdleConnections(port_);
  while (!isReady(listener_->ended, std::chrono::milliseconds(50)));
  listener_->ended.get();
}

HttpReply HttpServer::reply(const HttpRequest& request) const {
  try {
    demandAnonymousKey(request);
    return handlerFor(request)(request);
  } catch (const ServiceError& refusal) {
    return refusal.reply();
  } catch (const DecodingError& error) {
    return badRequest(error.path().empty() ? "The body " + error.description() + "."
                                           : "In the body, " + error.description() + ".")
        .reply();
  } catch (const std::exception& error) {
    return ServiceError(500, "internal_error", error.what()).reply();
  }
}

void HttpServer::demandAnonymousKey(const HttpRequest& request) const {
  const auto key = request.header("apikey");
  if (!key) throw ServiceError(401, "no_api_key", "No API key found in the request.");
  if (*key != settings_.anonymousKey)
    throw ServiceError(401, "invalid_api_key", "Invalid API key.");
}

const HttpServer::Handler& HttpServer::handlerFor(const HttpRequest& request) const {
  const auto path = routes_.find(request.path);
  if (path == routes_.end()) throw ServiceError(404, "not_found", "There is no such route.");
  // A warm-up wants the connection only.
  static const Handler warmUp = [](const HttpRequest&) { return HttpReply{.status = 204}; };
  if (request.method == "OPTIONS") return warmUp;
  const auto method = path->second.find(request.method);
  if (method == path->second.end())
    throw ServiceError(405, "method_not_allowed",
                       "This route does not know the method " + request.method + ".");
  return method->second;
}

}  // namespace quillo::service
