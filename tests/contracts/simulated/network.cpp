// The simulated network keeps the contract of URL sessions.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/url_session_contract.h"

namespace quillo::contracts {
namespace {

using simulated::Answer;
using simulated::Failure;
using simulated::NotHTTP;
using simulated::Reply;
using simulated::Stall;
using simulated::Truncated;

Answer answerOf(const Served& served) {
  if (const auto* reply = std::get_if<ServedReply>(&served))
    return Reply{reply->status, reply->body, reply->delay, reply->transfer, reply->headers};
  switch (std::get<Misbehaviour>(served)) {
    case Misbehaviour::stall:
      return Stall{};
    case Misbehaviour::drop:
      return Failure{URLErrorCode::networkConnectionLost};
    case Misbehaviour::truncate:
      return Truncated{{.body = "cut in the middle"}};
    case Misbehaviour::gibberish:
      return NotHTTP{};
  }
  return Stall{};
}

class SimulatedURLSessions final : public SimulatedHost<URLSessionHost> {
 public:
  SimulatedURLSessions() { network().setHostDown(nobody(), true); }

  URLSessions& sessions() override { return network(); }
  std::string server() override { return "http://server.test"; }
  std::string nobody() override { return "http://nobody.test"; }
  void serve(const std::string& path, Served served) override {
    network().handle(path,
                     [served](const simulated::RecordedRequest&) { return answerOf(served); });
  }
  std::vector<SeenRequest> seen() override {
    std::vector<SeenRequest> seen;
    for (const auto& request : network().requests())
      seen.push_back({request.method, request.path, request.headers, request.body});
    return seen;
  }
  void blockUntilSeen(std::size_t) override {}  // nothing happens while the main thread works
  std::size_t underWay() override { return network().requestsUnderWay(); }
  int connectionsOpened() override { return network().connectionsOpened(); }
  void closeIdleConnections() override { network().closeIdleConnections(); }

 private:
  simulated::ScriptedNetwork& network() { return desktop_.network(); }
};
INSTANTIATE_TEST_SUITE_P(Simulated, URLSessionContract, hostedBy<SimulatedURLSessions>());

}  // namespace
}  // namespace quillo::contracts
