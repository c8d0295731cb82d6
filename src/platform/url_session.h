// HTTP requests.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/bytes.h"
#include "base/error.h"
#include "base/result.h"
#include "base/task.h"
#include "base/time.h"

namespace quillo {

// The domain and the codes of transport errors.
inline constexpr const char* urlErrorDomain = "NSURLErrorDomain";
enum class URLErrorCode : int {
  cancelled = -999,
  badURL = -1000,
  timedOut = -1001,
  cannotFindHost = -1003,
  cannotConnectToHost = -1004,
  networkConnectionLost = -1005,
  dnsLookupFailed = -1006,
  resourceUnavailable = -1008,
  notConnectedToInternet = -1009,
  badServerResponse = -1011,
  dataNotAllowed = -1020,
  secureConnectionFailed = -1200,
  serverCertificateUntrusted = -1202,
};

// A value, and what flows throw for it.
class URLError final : public SystemError {
 public:
  URLError(URLErrorCode code, std::string message)
      : SystemError({urlErrorDomain, static_cast<int>(code), std::move(message)}) {}

  URLErrorCode urlCode() const { return static_cast<URLErrorCode>(code()); }
};

using HeaderFields = std::vector<std::pair<std::string, std::string>>;

struct URLRequest {
  std::string url;
  std::string method = "GET";
  HeaderFields headers;  // sent in this order
  Bytes body;
  // Longest wait without a byte; absent: the session's.
  std::optional<Duration> timeout;
};

struct HTTPResponse {
  int status = 0;
  HeaderFields headers;
  Bytes body;
};

// A reply that is not HTTP.
struct NotHTTPResponse {};

using URLResponse = std::variant<HTTPResponse, NotHTTPResponse>;

enum class WhenOffline { fail, waitForConnectivity };

struct URLSessionConfiguration {
  Duration timeoutForRequest{};   // longest wait without a byte
  Duration timeoutForResource{};  // longest life of the whole request
  WhenOffline whenOffline = WhenOffline::fail;
};

// Keeps connections and uses them again for the same host. Main thread.
class URLSession {
 public:
  virtual ~URLSession() = default;
  // A cancelled task is told so at once: nothing is sent for one that was cancelled before, and
  // what is on its way is broken off. Waits for as long as the limits of session and request allow.
  virtual Task<Result<URLResponse, URLError>> data(URLRequest request) = 0;
};

class URLSessions {
 public:
  virtual ~URLSessions() = default;
  virtual std::unique_ptr<URLSession> make(URLSessionConfiguration configuration) = 0;
};

}  // namespace quillo
