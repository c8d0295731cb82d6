// All requests of the program, on one thread.
#pragma once

#include <curl/curl.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

#include "hosts/linux/curl/curl_transfer.h"
#include "hosts/linux/curl/route_watch.h"
#include "platform/url_session.h"

namespace quillo::linux_host {

// Keeps connections open between requests. The thread sleeps while no request is on its way.
class CurlTransfers {
 public:
  enum class Id : std::uint64_t {};

  CurlTransfers();
  // Ends what is on its way without telling anyone.
  ~CurlTransfers();
  CurlTransfers(const CurlTransfers&) = delete;
  CurlTransfers& operator=(const CurlTransfers&) = delete;

  // Any thread. `done` runs on the worker's thread, at most once.
  Id start(URLRequest request, URLSessionConfiguration configuration,
           std::function<void(TransferResult)> done);
  // Any thread; returns at once. One that has ended is ignored.
  void cancel(Id transfer);

 private:
  using Command = std::function<void()>;
  void send(Command command);
  void run();
  bool runCommands();
  void begin(Id id, std::unique_ptr<CurlTransfer> transfer);
  void drop(Id id);
  void finishCompleted();
  void finish(Id id, CURLcode code);
  void failOverdue();
  void waitForNetwork(Id id);
  void retryWaiting();
  void sleepUntilNews();
  Duration untilNextDeadline() const;
  Id idOf(const CurlTransfer& transfer) const;

  struct Running {
    std::unique_ptr<CurlTransfer> transfer;
    bool isWaitingForNetwork = false;
  };

  std::mutex mutex_;
  std::vector<Command> commands_;  // guarded by mutex_
  std::uint64_t nextId_ = 1;       // guarded by mutex_
  bool closing_ = false;           // guarded by mutex_

  // The worker's own.
  CURLM* multi_;
  std::unordered_map<Id, Running> running_;
  std::optional<RouteWatch> routeWatch_;  // open while a transfer waits for the network

  std::jthread worker_;
};

}  // namespace quillo::linux_host
