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
  int connectionsOpened() override { return server_.connectionsOpened(); }
  void closeIdleConnections() override { server_.closeIdleConnections(); }

 private:
  LoopbackServer server_;
  linux_host::CurlURLSessions sessions_;
};

INSTANTIATE_TEST_SUITE_P(RealDesktop, URLSessionContract, hostedBy<LinuxURLSessions>());

}  // namespace
}  // namespace quillo::contracts
