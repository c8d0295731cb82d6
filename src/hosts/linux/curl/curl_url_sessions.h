// Sessions that share one thread and its connections.
#pragma once

#include "hosts/linux/curl/curl_transfers.h"
#include "platform/url_session.h"

namespace quillo::linux_host {

// Outlives its sessions. Goes before the main thread's last turn: replies are posted there.
class CurlURLSessions final : public URLSessions {
 public:
  std::unique_ptr<URLSession> make(URLSessionConfiguration configuration) override;

 private:
  CurlTransfers transfers_;
};

}  // namespace quillo::linux_host
