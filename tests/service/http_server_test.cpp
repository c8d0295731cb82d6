#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <future>

#include "service/running_service.h"

namespace quillo::service {
namespace {

enum class Sending { ends, goesOn };

// What the service answers to raw bytes, until it closes the connection.
std::string exchange(int port, const std::string& bytes, Sending sending) {
  const int connection = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  if (sending == Sending::ends) ::shutdown(connection, SHUT_WR);
  std::string reply;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = ::recv(connection, buffer.data(), buffer.size(), 0)) > 0;)
    reply.append(buffer.data(), static_cast<std::size_t>(count));
  ::close(connection);
  return reply;
}

TEST(HttpServer, AnswersWrongRequestsWithAStatusAndJson) {
  RunningService service;
  EXPECT_EQ(service.client().Get("/functions/v1/get-config", {{"apikey", "guess"}})->status, 401);
  EXPECT_EQ(service.get("/functions/v1/nowhere").at("error"), "not_found");
  EXPECT_EQ(service.get("/functions/v1/transform").at("error"), "method_not_allowed");

  const Identity ada = guest("qd_ada");
  for (const char* body : {"", "{", "[]", "\xff\xfe"}) {
    const Answer bad =
        service.postText("/functions/v1/transform", body, RunningService::headersOf(ada));
    EXPECT_EQ(bad.status, 400) << body;
    EXPECT_FALSE(bad.at("message").empty());
  }
  EXPECT_EQ(service.postText("/auth/v1/signup", std::string(100'000, '['), {}).status, 400);
  EXPECT_EQ(service.transform(ada, {{"text", 5}}).at("message"),
            "In the body, text: is not a text.");
}

TEST(HttpServer, TakesABodyOfADeclaredLengthUpToItsLimit) {
  ServiceOptions options = testOptions();
  options.maximumUploadBytes = 10'000;
  RunningService service(options);
  EXPECT_EQ(service.postText("/functions/v1/transform", std::string(20'000, ' '), {}).status, 413);

  const std::string token = service.signUp("ada@example.com").at("access_token");
  const std::string head =
      "POST /functions/v1/delete-user HTTP/1.1\r\nHost: x\r\nConnection: close\r\napikey: " +
      Service::anonymousKey() + "\r\nAuthorization: Bearer " + token + "\r\n";
  // The answer does not wait for the body, which could cost it its way back.
  const std::string chunked =
      exchange(service.port(), head + "Transfer-Encoding: chunked\r\n\r\n", Sending::goesOn);
  EXPECT_TRUE(chunked.starts_with("HTTP/1.1 411")) << chunked;
  // A request without a length has no body.
  const std::string reply = exchange(service.port(), head + "\r\n", Sending::goesOn);
  EXPECT_TRUE(reply.starts_with("HTTP/1.1 200")) << reply;
}

TEST(HttpServer, LivesOnAfterJunk) {
  RunningService service;
  const std::string head = "apikey: " + Service::anonymousKey() + "\r\nHost: x\r\n";
  const std::vector<std::string> junk{
      std::string("\0\1\2\3\r\n\r\n", 8),
      "GET\r\n\r\n",
      std::string(100'000, 'A'),
      "POST /functions/v1/transcribe HTTP/1.1\r\n" + head +
          "Content-Type: multipart/form-data\r\nContent-Length: 5\r\n\r\nhello",
      "POST /functions/v1/transcribe HTTP/1.1\r\n" + head +
          "Content-Type: multipart/form-data; boundary=b\r\nContent-Length: 9\r\n\r\n--b\r\nhell",
      "POST /auth/v1/signup HTTP/1.1\r\n" + head + "Content-Length: -1\r\n\r\n{}",
      "POST /auth/v1/signup HTTP/1.1\r\n" + head + "Content-Length: 50\r\n\r\n{}",
  };
  for (const std::string& bytes : junk) {
    const std::string reply = exchange(service.port(), bytes, Sending::ends);
    EXPECT_EQ(reply.find("HTTP/1.1 2"), std::string::npos) << bytes.substr(0, 60);
  }
  EXPECT_EQ(service.get("/functions/v1/get-config").status, 200);
}

TEST(HttpServer, KeepsAWarmConnectionUntilItStopsAtOnce) {
  RunningService service;
  httplib::Client client = service.client();
  client.set_keep_alive(true);
  const auto warmUp = client.Options("/functions/v1/transcribe", RunningService::key());
  EXPECT_EQ(warmUp->status, 204);
  const auto socket = client.socket();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(client.Get("/functions/v1/get-config", RunningService::key())->status, 200);
    EXPECT_EQ(client.socket(), socket);
  }
  // A second server on the port is refused, not given every other connection.
  ServiceOptions options = testOptions();
  options.port = service.port();
  EXPECT_THROW(RunningService{options}, std::runtime_error);

  const auto begin = std::chrono::steady_clock::now();
  service.stop();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_FALSE(client.Get("/functions/v1/get-config", RunningService::key()));
}

TEST(HttpServer, ServesManyAtATime) {
  RunningService service;
  std::vector<std::future<int>> statuses;
  for (int i = 0; i < 24; ++i) {
    statuses.push_back(std::async(std::launch::async, [&service, i] {
      const Identity who = guest("qd_" + std::to_string(i));
      const int transformed = service.transform(who, {{"text", "twelve letters"}}).status;
      return transformed == 200 ? service.usage(who).body["monthlyChars"].get<int>() : -1;
    }));
  }
  for (auto& status : statuses) EXPECT_EQ(status.get(), 14);
}

}  // namespace
}  // namespace quillo::service
