// One request on its way.
#pragma once

#include <curl/curl.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/time.h"
#include "hosts/linux/curl/curl_errors.h"
#include "platform/url_session.h"

namespace quillo::linux_host {

using TransferResult = Result<URLResponse, URLError>;

// Used by one thread. The request, with its body, stays where it is: libcurl reads it from here.
class CurlTransfer {
 public:
  CurlTransfer(URLRequest request, URLSessionConfiguration configuration,
               std::function<void(TransferResult)> done);
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;
  ~CurlTransfer();

  CURL* handle() const { return handle_; }
  static CurlTransfer& of(CURL* handle);
  bool isHTTP() const;
  bool waitsForConnectivity() const {
    return configuration_.whenOffline == WhenOffline::waitForConnectivity;
  }
  // Makes it ready to be sent, also once more after it failed.
  void prepare();
  // When it has waited too long for a byte, or lived too long.
  MonotonicTime deadline() const;

  CurlFailure failure(CURLcode code) const;
  void succeed();
  void succeedWithoutHTTP();
  void fail(URLErrorCode code, std::string message);
  // What libcurl says about its last failure.
  std::string message(CURLcode code) const;

 private:
  static std::size_t receiveBody(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t receiveHeader(char* bytes, std::size_t size, std::size_t count, void* self);
  static int seeProgress(void* self, curl_off_t, curl_off_t down, curl_off_t, curl_off_t up);
  void headerLine(std::string_view line);
  void chooseMethod();
  void addHeaders();
  void addHeader(const std::string& line);
  bool sends(std::string_view header) const;

  const URLRequest request_;
  const URLSessionConfiguration configuration_;
  const std::function<void(TransferResult)> done_;
  CURL* handle_;
  curl_slist* headers_ = nullptr;
  std::array<char, CURL_ERROR_SIZE> problem_{};
  HTTPResponse response_;
  const MonotonicTime begun_;
  MonotonicTime lastByte_;
  curl_off_t bytesMoved_ = 0;
};

}  // namespace quillo::linux_host
