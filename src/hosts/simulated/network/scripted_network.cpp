#include "hosts/simulated/network/scripted_network.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>

namespace quillo::simulated {
namespace {

constexpr Duration never = Duration::max() / 4;

struct Address {
  std::string host;  // with its scheme and port
  std::string path;
};

// Nothing for what is not an absolute HTTP address.
std::optional<Address> parseAddress(const std::string& url) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (!url.starts_with(scheme)) continue;
    const std::size_t pathStart = std::min(url.find_first_of("/?#", scheme.size()), url.size());
    if (pathStart == scheme.size()) return std::nullopt;
    const std::size_t pathEnd = std::min(url.find_first_of("?#", pathStart), url.size());
    if (url.find_first_of(" \t\r\n<>\"{}|\\^`") != std::string::npos) return std::nullopt;
    return Address{url.substr(0, pathStart), url.substr(pathStart, pathEnd - pathStart)};
  }
  return std::nullopt;
}

std::string lowerASCII(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

const char* messageOf(URLErrorCode code) {
  switch (code) {
    case URLErrorCode::cancelled:
      return "cancelled";
    case URLErrorCode::badURL:
      return "bad URL";
    case URLErrorCode::timedOut:
      return "The request timed out.";
    case URLErrorCode::cannotFindHost:
      return "A server with the specified hostname could not be found.";
    case URLErrorCode::cannotConnectToHost:
      return "Could not connect to the server.";
    case URLErrorCode::networkConnectionLost:
      return "The network connection was lost.";
    case URLErrorCode::dnsLookupFailed:
      return "The name could not be looked up.";
    case URLErrorCode::resourceUnavailable:
      return "resource unavailable";
    case URLErrorCode::notConnectedToInternet:
      return "The Internet connection appears to be offline.";
    case URLErrorCode::badServerResponse:
      return "There was a bad response from the server.";
    case URLErrorCode::dataNotAllowed:
      return "Data is not allowed at the moment.";
    case URLErrorCode::secureConnectionFailed:
      return "A secure connection could not be made.";
    case URLErrorCode::serverCertificateUntrusted:
      return "The certificate for this server is invalid.";
  }
  return "unknown error";
}

}  // namespace

// Idle connections of one session, by host, each with the epoch of its opening.
struct ScriptedNetwork::Connections {
  std::map<std::string, std::vector<int>> idle;
};

// One request on its way, shared by the waiting task and the happenings that move it on.
struct ScriptedNetwork::Exchange {
  using Outcome = Result<URLResponse, URLErrorCode>;

  Exchange(MainThread& mainThread, const URLSessionConfiguration& session, URLRequest made)
      : request(std::move(made)),
        whenOffline(session.whenOffline),
        idleLimit(request.timeout.value_or(session.timeoutForRequest)),
        totalLimit(session.timeoutForResource),
        done(mainThread) {
    if (idleLimit <= Duration::zero()) idleLimit = never;
    if (totalLimit <= Duration::zero()) totalLimit = never;
  }

  void finish(Timeline& timeline, Outcome result) {
    for (const Timeline::Plan plan : plans) timeline.cancel(plan);
    plans.clear();
    done.deliver(std::move(result));
  }

  URLRequest request;
  WhenOffline whenOffline;
  Duration idleLimit;
  Duration totalLimit;
  Address address;
  std::shared_ptr<Connections> connections;
  MonotonicTime start;
  bool isSent = false;
  std::vector<Timeline::Plan> plans;
  Completion<Outcome> done;
};

class ScriptedNetwork::Session final : public URLSession {
 public:
  Session(ScriptedNetwork& network, URLSessionConfiguration configuration)
      : network_(network), configuration_(configuration) {}

  Task<Result<URLResponse, URLError>> data(URLRequest request) override {
    return perform(network_, configuration_, connections_, std::move(request));
  }

 private:
  // Apart from the session, which may go before the reply comes.
  static Task<Result<URLResponse, URLError>> perform(ScriptedNetwork& network,
                                                     URLSessionConfiguration configuration,
                                                     std::shared_ptr<Connections> connections,
                                                     URLRequest request) {
    const TaskContext context = co_await currentTask();
    if (context.stopToken.stop_requested()) co_return error(URLErrorCode::cancelled);
    const auto address = parseAddress(request.url);
    if (!address) co_return error(URLErrorCode::badURL);
    const auto exchange =
        std::make_shared<Exchange>(*context.mainThread, configuration, std::move(request));
    exchange->address = *address;
    exchange->connections = std::move(connections);
    network.begin(exchange);
    Timeline& timeline = network.timeline_;
    Exchange::Outcome result = co_await awaitOrCancel(exchange->done, [exchange, &timeline] {
      exchange->finish(timeline, URLErrorCode::cancelled);
    });
    if (!result) co_return error(result.error());
    co_return *std::move(result);
  }

  static URLError error(URLErrorCode code) { return {code, messageOf(code)}; }

  ScriptedNetwork& network_;
  URLSessionConfiguration configuration_;
  std::shared_ptr<Connections> connections_ = std::make_shared<Connections>();
};

std::unique_ptr<URLSession> ScriptedNetwork::make(URLSessionConfiguration configuration) {
  return std::make_unique<Session>(*this, configuration);
}

// --- The way of a request ---

void ScriptedNetwork::begin(const std::shared_ptr<Exchange>& exchange) {
  exchange->start = timeline_.now();
  std::erase_if(exchanges_, [](const auto& old) { return old.expired(); });
  exchanges_.push_back(exchange);
  if (online_) return send(exchange);
  if (exchange->whenOffline == WhenOffline::fail)
    return exchange->finish(timeline_, URLErrorCode::notConnectedToInternet);
  const Duration limit = std::min(exchange->idleLimit, exchange->totalLimit);
  if (limit < never)
    exchange->plans.push_back(timeline_.after(
        limit, [this, exchange] { exchange->finish(timeline_, URLErrorCode::timedOut); }));
}

Duration ScriptedNetwork::connect(Exchange& exchange) {
  auto& idle = exchange.connections->idle[exchange.address.host];
  std::erase_if(idle, [this](int epoch) { return epoch != connectionEpoch_; });
  const bool warm = !idle.empty();
  requests_.back().usedWarmConnection = warm;
  if (warm) {
    idle.pop_back();
    return Duration::zero();
  }
  ++connectionsOpened_;
  return connectTime_;
}

void ScriptedNetwork::send(const std::shared_ptr<Exchange>& exchange) {
  for (const Timeline::Plan plan : exchange->plans) timeline_.cancel(plan);
  exchange->plans.clear();
  exchange->isSent = true;
  const URLRequest& request = exchange->request;
  requests_.push_back({request.method, request.url, exchange->address.path, request.headers,
                       request.body, timeline_.now()});
  const Duration connectTime = connect(*exchange);

  const auto finishAfter = [&](Duration delay, Exchange::Outcome result, bool keepsConnection) {
    exchange->plans.push_back(
        timeline_.after(delay, [this, exchange, keepsConnection, result = std::move(result)] {
          if (keepsConnection)
            exchange->connections->idle[exchange->address.host].push_back(connectionEpoch_);
          exchange->finish(timeline_, result);
        }));
  };
  // The whole request ends at its resource time-out, counted from its start.
  const Duration totalLeft = exchange->totalLimit - (timeline_.now() - exchange->start);
  const auto deliver = [&](Duration end, Duration longestGap, Duration gapEnd,
                           Exchange::Outcome result, bool keepsConnection) {
    const Duration idleEnd = longestGap > exchange->idleLimit ? gapEnd : never;
    const Duration timeOut = std::min(idleEnd, totalLeft);
    if (end <= timeOut && end < never)
      finishAfter(end, std::move(result), keepsConnection);
    else if (timeOut < never)
      finishAfter(timeOut, URLErrorCode::timedOut, false);
  };
  const auto deliverBody = [&](const Reply& reply, double share, Exchange::Outcome result,
                               bool keepsConnection) {
    const Duration firstByte = connectTime + reply.delay;
    const Duration gap =
        reply.transfer / static_cast<int>(std::max<std::size_t>(1, reply.body.size()));
    const Duration gapEnd =
        (firstByte > exchange->idleLimit ? Duration::zero() : firstByte) + exchange->idleLimit;
    const Duration end = firstByte + std::chrono::duration_cast<Duration>(reply.transfer * share);
    deliver(end, std::max(firstByte, gap), gapEnd, std::move(result), keepsConnection);
  };

  const Answer answer = answerTo(*exchange, requests_.back());
  if (const auto* reply = std::get_if<Reply>(&answer)) {
    deliverBody(*reply, 1.0, URLResponse(HTTPResponse{reply->status, reply->headers, reply->body}),
                true);
  } else if (const auto* cut = std::get_if<Truncated>(&answer)) {
    deliverBody(cut->reply, 0.5, URLErrorCode::networkConnectionLost, false);
  } else if (const auto* failure = std::get_if<Failure>(&answer)) {
    const Duration end = connectTime + failure->delay;
    deliver(end, end, exchange->idleLimit, failure->code, false);
  } else if (const auto* other = std::get_if<NotHTTP>(&answer)) {
    const Duration end = connectTime + other->delay;
    deliver(end, end, exchange->idleLimit, URLResponse(NotHTTPResponse{}), false);
  } else {
    deliver(never, never, exchange->idleLimit, URLErrorCode::timedOut, false);
  }
}

// --- Scripts ---

bool ScriptedNetwork::Route::matches(const RecordedRequest& request) const {
  const bool methodFits = method.empty() ? request.method != "OPTIONS" : request.method == method;
  return methodFits && request.path.ends_with(pathSuffix);
}

Answer ScriptedNetwork::answerTo(const Exchange& exchange, const RecordedRequest& request) {
  if (hostsDown_.contains(exchange.address.host)) return Failure{URLErrorCode::cannotConnectToHost};
  const auto best = [&](auto& routes, auto usable) {
    auto found = routes.end();
    for (auto route = routes.begin(); route != routes.end(); ++route) {
      if (!route->first.matches(request) || !usable(route->second)) continue;
      if (found == routes.end() || route->first.pathSuffix.size() > found->first.pathSuffix.size())
        found = route;
    }
    return found;
  };
  const auto queue = best(queues_, [](const auto& waiting) { return !waiting.empty(); });
  if (queue != queues_.end()) {
    Answer answer = std::move(queue->second.front());
    queue->second.pop_front();
    return answer;
  }
  const auto handler = best(handlers_, [](const auto&) { return true; });
  if (handler != handlers_.end()) return handler->second(request);
  if (request.method == "OPTIONS") return Reply{.status = 204};
  return Reply{.status = 404,
               .body = R"({"error":"no answer was scripted for )" + request.method + " " +
                       request.path + "\"}"};
}

void ScriptedNetwork::reply(const std::string& pathSuffix, Answer answer) {
  replyTo("", pathSuffix, std::move(answer));
}

void ScriptedNetwork::fail(const std::string& pathSuffix, URLErrorCode code, Duration delay) {
  reply(pathSuffix, Failure{code, delay});
}

void ScriptedNetwork::replyTo(const std::string& method, const std::string& pathSuffix,
                              Answer answer) {
  queues_[{method, pathSuffix}].push_back(std::move(answer));
}

void ScriptedNetwork::handle(const std::string& pathSuffix, Handler handler) {
  handlers_[{"", pathSuffix}] = std::move(handler);
}

bool ScriptedNetwork::hasQueuedAnswers() const {
  return std::any_of(queues_.begin(), queues_.end(),
                     [](const auto& queue) { return !queue.second.empty(); });
}

void ScriptedNetwork::setHostDown(const std::string& host, bool down) {
  if (down)
    hostsDown_.insert(host);
  else
    hostsDown_.erase(host);
}

void ScriptedNetwork::setOnline(bool online) {
  if (std::exchange(online_, online) == online) return;
  closeIdleConnections();
  for (const auto& weak : std::vector(exchanges_)) {
    const auto exchange = weak.lock();
    if (!exchange || exchange->done.isDelivered()) continue;
    if (online && !exchange->isSent) send(exchange);
    if (!online && exchange->isSent)
      exchange->finish(timeline_, URLErrorCode::networkConnectionLost);
  }
}

std::vector<RecordedRequest> ScriptedNetwork::requestsTo(std::string_view pathSuffix) const {
  std::vector<RecordedRequest> found;
  for (const RecordedRequest& request : requests_) {
    if (request.method != "OPTIONS" && request.path.ends_with(pathSuffix)) found.push_back(request);
  }
  return found;
}

std::size_t ScriptedNetwork::requestsUnderWay() const {
  return static_cast<std::size_t>(
      std::count_if(exchanges_.begin(), exchanges_.end(), [](const auto& weak) {
        const auto exchange = weak.lock();
        return exchange && !exchange->done.isDelivered();
      }));
}

std::optional<std::string> RecordedRequest::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (lowerASCII(key) == lowerASCII(name)) return value;
  }
  return std::nullopt;
}

}  // namespace quillo::simulated
