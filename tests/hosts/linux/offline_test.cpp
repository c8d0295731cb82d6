// Requests of a machine without a network. Runs in a network namespace that is empty at first.
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <fstream>

#include "contracts/linux/linux_contract_host.h"
#include "contracts/linux/linux_loopback_server.h"
#include "hosts/linux/curl/curl_url_sessions.h"
#include "hosts/linux/curl/default_route.h"

namespace quillo::linux_host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

void switchLoopback(bool on) {
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM, 0));
  ifreq request{};
  std::ranges::copy(std::string("lo"), request.ifr_name);
  request.ifr_flags = on ? IFF_UP : 0;
  ASSERT_EQ(::ioctl(socket.get(), SIOCSIFFLAGS, &request), 0);
}

class Offline : public testing::Test {
 protected:
  Offline() {
    // The server may listen on an address that is not there yet.
    std::ofstream("/proc/sys/net/ipv4/ip_nonlocal_bind") << 1;
    server_.emplace();
    server_->serve("/usage", contracts::ServedReply{.body = "{}"});
  }
  std::optional<URLErrorCode> failure(URLSessionConfiguration configuration) {
    const auto session = sessions_.make(configuration);
    const auto outcome =
        contracts::await(host_, session->data({server_->address() + "/usage", "GET", {}, {}, {}}));
    return outcome.get() ? std::nullopt : std::optional(outcome.get().error().urlCode());
  }

  contracts::LinuxContractHost<contracts::ContractHost> host_;
  std::optional<contracts::LoopbackServer> server_;
  CurlURLSessions sessions_;
};

TEST_F(Offline, ARequestFailsAtOnceOrWaitsWithinItsLimits) {
  ASSERT_FALSE(hasDefaultRoute());
  EXPECT_EQ(failure({seconds(30), seconds(30), WhenOffline::fail}),
            URLErrorCode::notConnectedToInternet);
  const MonotonicTime begun = host_.mainThread().now();
  EXPECT_EQ(failure({milliseconds(200), seconds(30), WhenOffline::waitForConnectivity}),
            URLErrorCode::timedOut);
  EXPECT_GE(host_.mainThread().now() - begun, Duration(milliseconds(200)));
  EXPECT_EQ(failure({seconds(30), milliseconds(200), WhenOffline::waitForConnectivity}),
            URLErrorCode::timedOut);
}

TEST_F(Offline, AWaitingRequestGoesOutWhenTheNetworkComes) {
  const auto session = sessions_.make({seconds(30), seconds(30), WhenOffline::waitForConnectivity});
  const auto first = contracts::startKept(
      host_, session->data({server_->address() + "/usage", "GET", {}, {}, {}}));
  const auto second = contracts::startKept(
      host_, session->data({server_->address() + "/usage", "GET", {}, {}, {}}));
  host_.runFor(milliseconds(100));
  EXPECT_FALSE(first.outcome->isKnown());
  second.handle.cancel();
  EXPECT_FALSE(contracts::await(host_, second).get());

  const MonotonicTime back = host_.mainThread().now();
  switchLoopback(true);
  const auto outcome = contracts::await(host_, first);
  EXPECT_EQ(std::get<HTTPResponse>(*outcome.get()).body, "{}");
  EXPECT_LT(host_.mainThread().now() - back, Duration(seconds(1))) << "the kernel tells the news";
  switchLoopback(false);
}

}  // namespace
}  // namespace quillo::linux_host
