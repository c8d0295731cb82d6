#include "hosts/linux/curl/curl_url_session.h"

#include <utility>

namespace quillo::linux_host {
namespace {

// Ends the transfer when its task ends, whichever way.
class CancelAtEnd {
 public:
  CancelAtEnd(CurlTransfers& transfers, CurlTransfers::Id transfer)
      : transfers_(transfers), transfer_(transfer) {}
  CancelAtEnd(const CancelAtEnd&) = delete;
  CancelAtEnd& operator=(const CancelAtEnd&) = delete;
  ~CancelAtEnd() { transfers_.cancel(transfer_); }

 private:
  CurlTransfers& transfers_;
  CurlTransfers::Id transfer_;
};

}  // namespace

Task<TransferResult> CurlURLSession::data(URLRequest request) {
  const TaskContext context = co_await currentTask();
  const URLError cancelled(URLErrorCode::cancelled, "cancelled");
  if (context.stopToken.stop_requested()) co_return cancelled;
  Completion<TransferResult> done(*context.mainThread);
  const CurlTransfers::Id transfer = transfers_.start(
      std::move(request), configuration_,
      [done](TransferResult result) { done.deliverFromAnyThread(std::move(result)); });
  const CancelAtEnd cancelAtEnd(transfers_, transfer);
  co_return co_await awaitOrCancel(done, [done, cancelled] { done.deliver(cancelled); });
}

}  // namespace quillo::linux_host
