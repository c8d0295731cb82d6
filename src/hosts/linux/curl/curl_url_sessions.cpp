#include "hosts/linux/curl/curl_url_sessions.h"

#include "hosts/linux/curl/curl_url_session.h"

namespace quillo::linux_host {

std::unique_ptr<URLSession> CurlURLSessions::make(URLSessionConfiguration configuration) {
  return std::make_unique<CurlURLSession>(transfers_, configuration);
}

}  // namespace quillo::linux_host
