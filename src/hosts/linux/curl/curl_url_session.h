// HTTP requests through libcurl.
#pragma once

#include "hosts/linux/curl/curl_transfers.h"
#include "platform/url_session.h"

namespace quillo::linux_host {

class CurlURLSession final : public URLSession {
 public:
  // `transfers` outlives this and every request.
  CurlURLSession(CurlTransfers& transfers, URLSessionConfiguration configuration)
      : transfers_(transfers), configuration_(configuration) {}

  Task<Result<URLResponse, URLError>> data(URLRequest request) override;

 private:
  CurlTransfers& transfers_;
  const URLSessionConfiguration configuration_;
};

}  // namespace quillo::linux_host
