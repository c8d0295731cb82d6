// Requests of the Linux host, against a server in this process.
#include "contracts/linux/linux_contract_host.h"
#include "contracts/linux/linux_loopback_server.h"
#include "contracts/suites/url_session_contract.h"
#include "hosts/linux/curl/curl_url_sessions.h"

namespace quillo::contracts {
namespace {

class LinuxURLSessions final : public LinuxContractHost<URLSessionHost> {
 public:
  URLSessions& sessions() override { return sessions_; }
  std::string server() override { return server_.address(); }
  std::string nobody() override { return "http://127.0.0.1:1"; }
  void serve(const std::string& path, Served served) override {
    server_.serve(path, std::move(served));
  }
  std::vector<SeenRequest> seen() override { return server_.seen(); }
  void blockUntilSeen(std::size_t count) override { server_.waitUntilSeen(count); }
  std::size_t underWay() override { return server_.underWay(); }
  LoopbackServer& loopback() { return server_; }
  int connectionsOpened() override { return server_.connectionsOpened(); }
  void closeIdleConnections() override { server_.closeIdleConnections(); }

 private:
  LoopbackServer server_;
  linux_host::CurlURLSessions sessions_;
};

INSTANTIATE_TEST_SUITE_P(RealDesktop, URLSessionContract, hostedBy<LinuxURLSessions>());

TEST(CurlURLSession, ALongUploadIsNoWaitWithoutAByte) {
  LinuxURLSessions host;
  host.serve("/transcribe", ServedReply{.body = "{}"});
  host.loopback().takeBodiesIn(std::chrono::milliseconds(1600));
  const auto session = host.sessions().make(
      {std::chrono::milliseconds(700), std::chrono::seconds(60), WhenOffline::fail});
  // The kernel takes a few megabytes before the server does.
  const Bytes audio(64'000'000, 'a');
  const auto outcome =
      await(host, session->data({host.server() + "/transcribe", "POST", {}, audio, {}}));
  EXPECT_EQ(std::get<HTTPResponse>(*outcome.get()).status, 200);
}

}  // namespace
}  // namespace quillo::contracts
