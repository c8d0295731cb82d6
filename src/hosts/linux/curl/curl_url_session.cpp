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

Task<URLResponse> CurlURLSession::data(URLRequest request) {
  const TaskContext context = co_await currentTask();
  if (context.stopToken.stop_requested()) throw URLError(URLErrorCode::cancelled, "cancelled");
  Completion<TransferResult> done(*context.mainThread);
  const CurlTransfers::Id transfer = transfers_.start(
      std::move(request), configuration_,
      [done](TransferResult result) { done.deliverFromAnyThread(std::move(result)); });
  const CancelAtEnd cancelAtEnd(transfers_, transfer);
  TransferResult result = co_await awaitOrCancel(
      done, [done] { done.deliver(URLFailure{URLErrorCode::cancelled, "cancelled"}); });
  if (const auto* failure = std::get_if<URLFailure>(&result))
    throw URLError(failure->code, failure->message);
  co_return std::get<URLResponse>(std::move(result));
}

}  // namespace quillo::linux_host
