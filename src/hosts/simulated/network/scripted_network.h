// A network whose servers answer by script.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "hosts/simulated/time/timeline.h"
#include "platform/url_session.h"

namespace quillo::simulated {

// What a server sends. Nothing arrives before `delay`; then the body trickles in evenly over
// `transfer`.
struct Reply {
  int status = 200;
  Bytes body{};
  Duration delay{};
  Duration transfer{};
  HeaderFields headers{};
};
// The connection fails after `delay`.
struct Failure {
  URLErrorCode code = URLErrorCode::networkConnectionLost;
  Duration delay{};
};
// The connection breaks when half of the body has arrived.
struct Truncated {
  Reply reply{};
};
// Something answers that does not speak HTTP.
struct NotHTTP {
  Duration delay{};
};
// Nothing ever comes.
struct Stall {};

using Answer = std::variant<Reply, Failure, Truncated, NotHTTP, Stall>;

// A request as the wire saw it.
struct RecordedRequest {
  std::string method;
  std::string url;
  std::string path;  // without the query
  HeaderFields headers{};
  Bytes body{};
  MonotonicTime time;
  bool usedWarmConnection = false;

  // Nothing when there is none; names without regard to case.
  std::optional<std::string> header(std::string_view name) const;
};

// A request is answered by the first of: the queued answers for its path, the handler for its
// path, and for OPTIONS an empty 204. Everything else is a 404 whose body says that no answer was
// scripted. Paths are matched by their suffix, the longest first.
class ScriptedNetwork final : public URLSessions {
 public:
  explicit ScriptedNetwork(Timeline& timeline) : timeline_(timeline) {}

  std::unique_ptr<URLSession> make(URLSessionConfiguration configuration) override;

  // --- Driver ---

  // Queues one answer for the next request to this path, of any method but OPTIONS.
  void reply(const std::string& pathSuffix, Answer answer);
  void fail(const std::string& pathSuffix, URLErrorCode code, Duration delay = {});
  // The same for one method.
  void replyTo(const std::string& method, const std::string& pathSuffix, Answer answer);
  // Answers whatever the queues do not; of any method but OPTIONS.
  using Handler = std::function<Answer(const RecordedRequest&)>;
  void handle(const std::string& pathSuffix, Handler handler);
  // Whether queued answers are left.
  bool hasQueuedAnswers() const;

  // Nobody listens at this address ("http://host:port") any more, or again somebody does.
  void setHostDown(const std::string& host, bool down);

  // Going off line breaks the requests under way and closes every connection.
  void setOnline(bool online);
  bool isOnline() const { return online_; }
  // How long a new connection takes before its request can go out.
  void setConnectTime(Duration duration) { connectTime_ = duration; }
  void closeIdleConnections() { ++connectionEpoch_; }

  const std::vector<RecordedRequest>& requests() const { return requests_; }
  // Those to one path, and those but OPTIONS.
  std::vector<RecordedRequest> requestsTo(std::string_view pathSuffix) const;
  void forgetRequests() { requests_.clear(); }
  int connectionsOpened() const { return connectionsOpened_; }
  // Requests that have no result yet.
  std::size_t requestsUnderWay() const;

 private:
  class Session;
  struct Exchange;
  struct Connections;
  struct Route {
    std::string method;  // empty: any but OPTIONS
    std::string pathSuffix;
    bool matches(const RecordedRequest& request) const;
    friend auto operator<=>(const Route&, const Route&) = default;
  };

  void begin(const std::shared_ptr<Exchange>& exchange);
  void send(const std::shared_ptr<Exchange>& exchange);
  Answer answerTo(const Exchange& exchange, const RecordedRequest& request);
  Duration connect(Exchange& exchange);

  Timeline& timeline_;
  std::map<Route, std::deque<Answer>> queues_;
  std::map<Route, Handler> handlers_;
  std::vector<RecordedRequest> requests_;
  std::vector<std::weak_ptr<Exchange>> exchanges_;
  std::set<std::string> hostsDown_;
  bool online_ = true;
  Duration connectTime_{};
  int connectionsOpened_ = 0;
  // Idle connections of an earlier epoch are closed.
  int connectionEpoch_ = 0;
};

}  // namespace quillo::simulated
