// An HTTP server on loopback that behaves as it is told, badly too.
#pragma once

#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "contracts/support/served_request.h"
#include "hosts/linux/posix/file_descriptor.h"

namespace quillo::contracts {

// A thread a connection. HTTP/1.1 with connections that are kept.
class LoopbackServer {
 public:
  LoopbackServer();
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  std::string address() const;
  void serve(const std::string& path, Served served);
  // Bodies of requests are taken in over this time from now on, and not as fast as they come.
  void takeBodiesIn(Duration duration);
  std::vector<SeenRequest> seen() const;
  // Blocks until so many have arrived, or twenty seconds have passed.
  void waitUntilSeen(std::size_t count);
  // Requests that arrived and whose connection has neither been answered nor ended.
  std::size_t underWay() const;
  int connectionsOpened() const;
  // Ends every connection that waits for a request.
  void closeIdleConnections();

 private:
  struct Connection {
    linux_host::FileDescriptor socket;
    bool isIdle = true;  // guarded by mutex_
    std::jthread thread;
  };

  void acceptConnections();
  void talk(Connection& connection);
  std::optional<SeenRequest> receive(int socket, std::string& buffer);
  bool answer(int socket, const SeenRequest& request);
  bool send(int socket, const ServedReply& reply);
  // Sleeps, but not beyond the end of the server.
  bool pause(Duration duration);
  bool pauseForBody(double share);

  linux_host::FileDescriptor listener_;
  int port_ = 0;
  mutable std::mutex mutex_;
  std::condition_variable ending_;
  std::condition_variable arrived_;
  bool isEnding_ = false;                 // guarded by mutex_
  std::map<std::string, Served> served_;  // guarded by mutex_
  Duration bodyTime_{};                   // guarded by mutex_
  std::vector<SeenRequest> seen_;         // guarded by mutex_
  std::list<Connection> connections_;     // guarded by mutex_
  std::jthread acceptor_;
};

}  // namespace quillo::contracts
