// HTTP/1.1 on the loopback interface: routes, the anonymous key, errors as JSON.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "service/http_message.h"

namespace quillo::service {

class HttpServer {
 public:
  // Runs on any thread of the server, several at once. May throw ServiceError or DecodingError,
  // which become replies.
  using Handler = std::function<HttpReply(const HttpRequest&)>;

  struct Settings {
    int port = 0;  // 0 takes any free one
    std::string anonymousKey;
    std::size_t maximumBodyBytes = 0;
    // Told after each reply; never the contents. May be empty.
    std::function<void(std::string_view method, std::string_view path, int status,
                       std::chrono::milliseconds taken)>
        served;
  };

  // Binds 127.0.0.1 at once; throws std::runtime_error when the port is taken.
  explicit HttpServer(Settings settings);
  // Stops.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  int port() const { return port_; }

  // Before `start`.
  void route(const std::string& method, const std::string& path, Handler handler);
  void start();
  // Lets running requests end, closes idle connections, and waits for both.
  void stop();

 private:
  struct Listener;

  void receiveRequests();
  HttpReply reply(const HttpRequest& request) const;
  const Handler& handlerFor(const HttpRequest& request) const;
  void demandAnonymousKey(const HttpRequest& request) const;

  Settings settings_;
  std::map<std::string, std::map<std::string, Handler>> routes_;  // path, method
  std::unique_ptr<Listener> listener_;
  int port_ = 0;
};

}  // namespace quillo::service
