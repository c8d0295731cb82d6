// What every URL session keeps.
#pragma once

#include <gmock/gmock.h>

#include <vector>

#include "contracts/support/contract_host.h"
#include "contracts/support/served_request.h"
#include "platform/url_session.h"

namespace quillo::contracts {

class URLSessionHost : public ContractHost {
 public:
  virtual URLSessions& sessions() = 0;
  // The address of a server, without a slash at the end.
  virtual std::string server() = 0;
  // The address of a machine on which nobody listens.
  virtual std::string nobody() = 0;
  // How every request to `path` is answered from now on.
  virtual void serve(const std::string& path, Served served) = 0;
  // In the order of arrival.
  virtual std::vector<SeenRequest> seen() = 0;
  // Keeps the calling thread from all else until so many have arrived.
  virtual void blockUntilSeen(std::size_t count) = 0;
  // Requests that the server has seen and is not done with.
  virtual std::size_t underWay() = 0;
  virtual int connectionsOpened() = 0;
  virtual void closeIdleConnections() = 0;
};

class URLSessionContract : public PortContract<URLSessionHost> {
 protected:
  using milliseconds = std::chrono::milliseconds;
  using seconds = std::chrono::seconds;

  std::unique_ptr<URLSession> session(Duration idle = seconds(20), Duration whole = seconds(60)) {
    return host().sessions().make({idle, whole, WhenOffline::waitForConnectivity});
  }
  URLRequest get(const std::string& path) { return {host().server() + path, "GET", {}, {}, {}}; }

  using Reply = Result<URLResponse, URLError>;

  static HTTPResponse httpOf(const Outcome<Reply>& outcome) {
    if (const Reply& reply = outcome.get()) return std::get<HTTPResponse>(*reply);
    ADD_FAILURE() << "no reply: " << outcome.get().error().description();
    return {};
  }
  // The reply, which the case expects to be HTTP.
  HTTPResponse reply(URLSession& session, URLRequest request) {
    return httpOf(await(host(), session.data(std::move(request))));
  }
  static std::optional<URLErrorCode> codeOf(const Outcome<Reply>& outcome) {
    const Reply& reply = outcome.get();
    if (reply) return std::nullopt;
    EXPECT_EQ(reply.error().domain(), urlErrorDomain);
    EXPECT_FALSE(reply.error().description().empty());
    return reply.error().urlCode();
  }
  std::optional<URLErrorCode> failure(URLSession& session, URLRequest request) {
    return codeOf(await(host(), session.data(std::move(request))));
  }
};

TEST_P(URLSessionContract, ARequestArrivesAsItWasMadeAndItsReplyComesBack) {
  Bytes audio(300'000, '\0');
  for (std::size_t i = 0; i < audio.size(); ++i) audio[i] = static_cast<char>(i * 7);
  const HeaderFields sent = {{"apikey", "anonymous.key"},
                             {"Authorization", "Bearer anonymous.key"},
                             {"Content-Type", "multipart/form-data; boundary=B0"},
                             {"X-Quillo-API-Key", "mx_qd_1"},
                             {"X-Quillo-Client", "macos-app"}};
  host().serve("/transcribe",
               ServedReply{.headers = {{"Content-Type", "application/json"}}, .body = audio});
  const auto calls = session();
  HeaderFields broken = sent;
  broken.emplace_back("X-Line", "a\r\nX-Next: b");
  const auto answer = reply(*calls, {host().server() + "/transcribe", "POST", broken, audio, {}});
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, audio);
  EXPECT_THAT(answer.headers, testing::Contains(testing::Pair("Content-Type", "application/json")));

  ASSERT_EQ(host().seen().size(), 1u);
  const SeenRequest seen = host().seen().front();
  EXPECT_EQ(seen.method, "POST");
  EXPECT_EQ(seen.path, "/transcribe");
  EXPECT_EQ(seen.body, audio);
  HeaderFields ours = seen.headers;
  std::erase_if(ours, [&](const auto& field) {
    return std::ranges::none_of(sent, [&](const auto& s) { return s.first == field.first; });
  });
  EXPECT_EQ(ours, sent) << "in the order in which they were given";
  EXPECT_THAT(seen.headers, testing::Not(testing::Contains(testing::Key("Expect"))));
  EXPECT_THAT(seen.headers, testing::Not(testing::Contains(testing::Key("X-Next"))));
}

TEST_P(URLSessionContract, AnyStatusIsAReplyAndNoFailure) {
  const auto calls = session();
  for (const int status : {204, 400, 401, 403, 404, 429, 500, 503}) {
    const Bytes body = status == 204 ? "" : "{\"error\":\"no\"}";
    host().serve("/transform", ServedReply{.status = status, .body = body});
    const auto answer = reply(*calls, {host().server() + "/transform", "POST", {}, "{}", {}});
    EXPECT_EQ(answer.status, status);
    EXPECT_EQ(answer.body, body);
  }
}

TEST_P(URLSessionContract, AConnectionThatWasWarmedUpIsUsedAgain) {
  host().serve("/transcribe", ServedReply{.body = "{}"});
  const auto calls = session();
  (void)reply(*calls, {host().server() + "/transcribe", "OPTIONS", {}, {}, milliseconds(5000)});
  EXPECT_EQ(host().connectionsOpened(), 1);
  for (int i = 0; i < 3; ++i) {
    host().runFor(milliseconds(50));
    (void)reply(*calls, {host().server() + "/transcribe", "POST", {}, "audio", {}});
  }
  EXPECT_EQ(host().connectionsOpened(), 1);
  EXPECT_EQ(host().seen().front().method, "OPTIONS");

  host().closeIdleConnections();
  EXPECT_EQ(reply(*calls, {host().server() + "/transcribe", "POST", {}, "audio", {}}).status, 200)
      << "a connection that the server closed meanwhile is no failure";
  EXPECT_EQ(host().connectionsOpened(), 2);
}

TEST_P(URLSessionContract, RequestsBesideEachOtherGetTheirOwnReplies) {
  const auto calls = session();
  std::vector<Running<Reply>> running;
  for (int i = 0; i < 8; ++i) {
    const std::string path = "/segment" + std::to_string(i);
    host().serve(path, ServedReply{.body = path, .delay = milliseconds(20 * (8 - i))});
    running.push_back(startKept(host(), calls->data(get(path))));
  }
  for (int i = 0; i < 8; ++i) {
    const auto outcome = await(host(), running[static_cast<std::size_t>(i)]);
    EXPECT_EQ(httpOf(outcome).body, "/segment" + std::to_string(i));
  }
}

TEST_P(URLSessionContract, TheRequestLimitCountsTheTimeWithoutAByteAndTheResourceLimitTheWhole) {
  host().serve("/trickle",
               ServedReply{.body = std::string(12, 'x'), .transfer = milliseconds(900)});
  host().serve("/stall", Misbehaviour::stall);
  const auto calls = session(milliseconds(400));
  EXPECT_EQ(reply(*calls, get("/trickle")).body, std::string(12, 'x'));

  const MonotonicTime begun = host().mainThread().now();
  EXPECT_EQ(failure(*calls, get("/stall")), URLErrorCode::timedOut);
  EXPECT_GE(host().mainThread().now() - begun, Duration(milliseconds(400)));

  URLRequest hasty = get("/stall");
  hasty.timeout = milliseconds(50);
  EXPECT_EQ(failure(*session(seconds(60)), hasty), URLErrorCode::timedOut)
      << "the request's own limit goes before the session's";

  EXPECT_EQ(failure(*session(seconds(5), milliseconds(500)), get("/trickle")),
            URLErrorCode::timedOut);
}

TEST_P(URLSessionContract, ACancelledTaskIsToldAtOnce) {
  host().serve("/stall", Misbehaviour::stall);
  host().serve("/usage", ServedReply{.body = "{}"});
  const auto calls = session(seconds(60));
  const auto stalled = startKept(host(), calls->data(get("/stall")));
  ASSERT_TRUE(host().runUntil([&] { return host().seen().size() == 1; }));
  const MonotonicTime asked = host().mainThread().now();
  stalled.handle.cancel();
  EXPECT_EQ(codeOf(await(host(), stalled)), URLErrorCode::cancelled);
  EXPECT_LT(host().mainThread().now() - asked, Duration(seconds(1)));
  EXPECT_TRUE(host().runUntil([&] { return host().underWay() == 0; })) << "it is broken off";
  EXPECT_EQ(reply(*calls, get("/usage")).status, 200) << "others are not touched";
}

TEST_P(URLSessionContract, NothingIsSentForATaskThatWasCancelledBefore) {
  host().serve("/usage", ServedReply{.body = "{}"});
  const auto calls = session();
  (void)reply(*calls, get("/usage"));
  const auto cancelled = startKept(host(), calls->data(get("/cancelled")));
  cancelled.handle.cancel();
  const auto beside = startKept(host(), calls->data(get("/usage")));
  // The main thread is busy until the request beside it has arrived: whatever was handed over for
  // the cancelled one, on the connection that was open already, has had its time.
  host().mainThread().post([this] { host().blockUntilSeen(2); });
  EXPECT_EQ(codeOf(await(host(), cancelled)), URLErrorCode::cancelled);
  EXPECT_EQ(httpOf(await(host(), beside)).status, 200);
  EXPECT_THAT(host().seen(), testing::Each(testing::Field(&SeenRequest::path, "/usage")));
}

TEST_P(URLSessionContract, FailuresBearTheirNumbers) {
  const auto calls = session();
  EXPECT_EQ(failure(*calls, {host().nobody() + "/", "GET", {}, {}, {}}),
            URLErrorCode::cannotConnectToHost);
  host().serve("/drop", Misbehaviour::drop);
  EXPECT_EQ(failure(*calls, get("/drop")), URLErrorCode::networkConnectionLost);
  host().serve("/truncate", Misbehaviour::truncate);
  EXPECT_EQ(failure(*calls, get("/truncate")), URLErrorCode::networkConnectionLost);
  EXPECT_EQ(failure(*calls, {"no address at all", "GET", {}, {}, {}}), URLErrorCode::badURL);
  host().serve("/gibberish", Misbehaviour::gibberish);
  const auto outcome = await(host(), calls->data(get("/gibberish")));
  EXPECT_TRUE(std::holds_alternative<NotHTTPResponse>(*outcome.get()));
}

TEST_P(URLSessionContract, TasksMayBeAbandonedWithRequestsUnderWay) {
  host().serve("/stall", Misbehaviour::stall);
  host().serve("/late", ServedReply{.body = "late", .delay = milliseconds(30)});
  const auto calls = session();
  const auto stalled = startKept(host(), calls->data(get("/stall")));
  const auto late = startKept(host(), calls->data(get("/late")));
  ASSERT_TRUE(host().runUntil([&] { return host().seen().size() == 2; }));
  host().mainThread().abandonTasks();
  host().runFor(milliseconds(100));
  EXPECT_FALSE(stalled.outcome->isKnown());
  EXPECT_FALSE(late.outcome->isKnown());
}

}  // namespace quillo::contracts
