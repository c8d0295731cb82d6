#include "hosts/linux/curl/curl_transfers.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "hosts/linux/curl/default_route.h"
#include "hosts/linux/posix/monotonic_clock.h"

namespace quillo::linux_host {
namespace {

using std::chrono::milliseconds;

// With nothing on its way, only a command ends the sleep.
constexpr milliseconds longestSleep = std::chrono::hours(24);
// Looks at the routes of a kernel that gives no news of them, while a request waits for one.
constexpr milliseconds routePolling = std::chrono::seconds(1);

}  // namespace

CurlTransfers::CurlTransfers() {
  curl_global_init(CURL_GLOBAL_DEFAULT);
  multi_ = curl_multi_init();
  worker_ = std::jthread([this] { run(); });
  pthread_setname_np(worker_.native_handle(), "quillo.network");
}

CurlTransfers::~CurlTransfers() {
  {
    const std::scoped_lock lock(mutex_);
    closing_ = true;
  }
  curl_multi_wakeup(multi_);
  worker_.join();
  curl_multi_cleanup(multi_);
  curl_global_cleanup();
}

CurlTransfers::Id CurlTransfers::start(URLRequest request, URLSessionConfiguration configuration,
                                       std::function<void(TransferResult)> done) {
  // Shared, because commands are copyable; the worker takes it out.
  auto transfer = std::make_shared<std::unique_ptr<CurlTransfer>>(
      std::make_unique<CurlTransfer>(std::move(request), configuration, std::move(done)));
  Id id{};
  {
    const std::scoped_lock lock(mutex_);
    id = Id{nextId_++};
  }
  send([this, id, transfer] { begin(id, std::move(*transfer)); });
  return id;
}

void CurlTransfers::cancel(Id transfer) {
  send([this, transfer] { drop(transfer); });
}

void CurlTransfers::send(Command command) {
  {
    const std::scoped_lock lock(mutex_);
    commands_.push_back(std::move(command));
  }
  curl_multi_wakeup(multi_);
}

void CurlTransfers::run() {
  while (runCommands()) {
    int stillRunning = 0;
    curl_multi_perform(multi_, &stillRunning);
    finishCompleted();
    failOverdue();
    sleepUntilNews();
    if (routeWatch_ && (routeWatch_->takeNews() || !routeWatch_->isOpen())) retryWaiting();
  }
  while (!running_.empty()) drop(running_.begin()->first);
}

bool CurlTransfers::runCommands() {
  std::vector<Command> commands;
  {
    const std::scoped_lock lock(mutex_);
    if (closing_) return false;
    commands.swap(commands_);
  }
  for (const Command& command : commands) command();
  return true;
}

void CurlTransfers::begin(Id id, std::unique_ptr<CurlTransfer> transfer) {
  if (!transfer->isHTTP()) return transfer->fail(URLErrorCode::badURL, "bad URL");
  Running& added = running_[id];
  added.transfer = std::move(transfer);
  added.transfer->prepare();
  curl_multi_add_handle(multi_, added.transfer->handle());
}

void CurlTransfers::drop(Id id) {
  const auto found = running_.find(id);
  if (found == running_.end()) return;
  curl_multi_remove_handle(multi_, found->second.transfer->handle());
  running_.erase(found);
}

void CurlTransfers::finishCompleted() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode code = message->data.result;
    finish(idOf(CurlTransfer::of(message->easy_handle)), code);
  }
}

void CurlTransfers::finish(Id id, CURLcode code) {
  CurlTransfer& transfer = *running_.at(id).transfer;
  const CurlFailure failure = transfer.failure(code);
  if (code == CURLE_OK) {
    transfer.succeed();
  } else if (code == CURLE_UNSUPPORTED_PROTOCOL) {
    // The scheme was looked at before: here the server spoke something else.
    transfer.succeedWithoutHTTP();
  } else if (!looksOffline(failure) || hasDefaultRoute()) {
    transfer.fail(urlErrorCode(failure), transfer.message(code));
  } else if (transfer.waitsForConnectivity()) {
    return waitForNetwork(id);
  } else {
    transfer.fail(URLErrorCode::notConnectedToInternet, transfer.message(code));
  }
  drop(id);
}

void CurlTransfers::failOverdue() {
  const MonotonicTime now = monotonicNow();
  std::vector<Id> overdue;
  for (const auto& [id, running] : running_)
    if (running.transfer->deadline() <= now) overdue.push_back(id);
  for (const Id id : overdue) {
    running_.at(id).transfer->fail(URLErrorCode::timedOut, "The request timed out.");
    drop(id);
  }
}

void CurlTransfers::waitForNetwork(Id id) {
  Running& waiting = running_.at(id);
  curl_multi_remove_handle(multi_, waiting.transfer->handle());
  waiting.isWaitingForNetwork = true;
  if (!routeWatch_) routeWatch_.emplace();
  // The network may have come before the watch was open.
  if (hasDefaultRoute()) retryWaiting();
}

void CurlTransfers::retryWaiting() {
  for (auto& [id, running] : running_) {
    if (!std::exchange(running.isWaitingForNetwork, false)) continue;
    running.transfer->prepare();
    curl_multi_add_handle(multi_, running.transfer->handle());
  }
  routeWatch_.reset();
}

void CurlTransfers::sleepUntilNews() {
  curl_waitfd routes{};
  routes.events = CURL_WAIT_POLLIN;
  unsigned watched = 0;
  if (routeWatch_ && routeWatch_->isOpen()) {
    routes.fd = routeWatch_->descriptor();
    watched = 1;
  }
  const auto wait = std::chrono::ceil<milliseconds>(untilNextDeadline());
  curl_multi_poll(multi_, &routes, watched, static_cast<int>(wait.count()), nullptr);
}

Duration CurlTransfers::untilNextDeadline() const {
  const MonotonicTime now = monotonicNow();
  Duration wait = routeWatch_ && !routeWatch_->isOpen() ? routePolling : longestSleep;
  for (const auto& [id, running] : running_)
    wait = std::min(wait, std::max(running.transfer->deadline() - now, Duration::zero()));
  return wait;
}

CurlTransfers::Id CurlTransfers::idOf(const CurlTransfer& transfer) const {
  return std::ranges::find_if(
             running_,
             [&](const auto& running) { return running.second.transfer.get() == &transfer; })
      ->first;
}

}  // namespace quillo::linux_host
