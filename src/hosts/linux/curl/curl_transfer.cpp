#include "hosts/linux/curl/curl_transfer.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "hosts/linux/posix/monotonic_clock.h"

namespace quillo::linux_host {
namespace {

constexpr long longestRedirection = 16;
// A connection that was warmed up when a recording began still serves when the longest one ends.
constexpr long keepIdleConnectionSeconds = 660;
constexpr long firstKeepAliveProbeSeconds = 45;

// A limit of nothing is none.
Duration orNever(Duration limit) {
  return limit > Duration::zero() ? limit : Duration::max() / 4;
}

// A line break would begin another header.
std::string withoutLineBreaks(std::string text) {
  std::erase_if(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
  return text;
}

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && curl_strnequal(a.data(), b.data(), a.size());
}

}  // namespace

CurlTransfer::CurlTransfer(URLRequest request, URLSessionConfiguration configuration,
                           std::function<void(TransferResult)> done)
    : request_(std::move(request)),
      configuration_(configuration),
      done_(std::move(done)),
      handle_(curl_easy_init()),
      begun_(monotonicNow()),
      lastByte_(begun_) {
  curl_easy_setopt(handle_, CURLOPT_URL, request_.url.c_str());
  curl_easy_setopt(handle_, CURLOPT_PRIVATE, this);
  curl_easy_setopt(handle_, CURLOPT_ERRORBUFFER, problem_.data());
  curl_easy_setopt(handle_, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle_, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
  curl_easy_setopt(handle_, CURLOPT_USERAGENT, "Quillo");
  curl_easy_setopt(handle_, CURLOPT_MAXREDIRS, longestRedirection);
  curl_easy_setopt(handle_, CURLOPT_MAXAGE_CONN, keepIdleConnectionSeconds);
  curl_easy_setopt(handle_, CURLOPT_TCP_KEEPALIVE, 1L);
  curl_easy_setopt(handle_, CURLOPT_TCP_KEEPIDLE, firstKeepAliveProbeSeconds);
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  // A name server that does not answer must not hold up a cancellation.
  curl_easy_setopt(handle_, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, receiveBody);
  curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle_, CURLOPT_HEADERFUNCTION, receiveHeader);
  curl_easy_setopt(handle_, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(handle_, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(handle_, CURLOPT_XFERINFOFUNCTION, seeProgress);
  curl_easy_setopt(handle_, CURLOPT_XFERINFODATA, this);
  chooseMethod();
  addHeaders();
}

CurlTransfer::~CurlTransfer() {
  curl_easy_cleanup(handle_);
  curl_slist_free_all(headers_);
}

CurlTransfer& CurlTransfer::of(CURL* handle) {
  char* self = nullptr;
  curl_easy_getinfo(handle, CURLINFO_PRIVATE, &self);
  return *reinterpret_cast<CurlTransfer*>(self);
}

void CurlTransfer::chooseMethod() {
  const std::string& method = request_.method;
  const bool isAlwaysWithBody = method == "POST" || method == "PUT" || method == "PATCH";
  if (isAlwaysWithBody || !request_.body.empty()) {
    curl_easy_setopt(handle_, CURLOPT_POST, 1L);
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, request_.body.data());
    curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request_.body.size()));
    if (method != "POST") curl_easy_setopt(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
  } else if (method == "HEAD") {
    curl_easy_setopt(handle_, CURLOPT_NOBODY, 1L);
    curl_easy_setopt(handle_, CURLOPT_FOLLOWLOCATION, 1L);
  } else if (method == "GET") {
    curl_easy_setopt(handle_, CURLOPT_FOLLOWLOCATION, 1L);
  } else {
    curl_easy_setopt(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
  }
}

bool CurlTransfer::sends(std::string_view header) const {
  return std::ranges::any_of(
      request_.headers, [&](const auto& field) { return equalsIgnoringCase(field.first, header); });
}

void CurlTransfer::addHeaders() {
  for (const auto& [name, value] : request_.headers) {
    const std::string line = withoutLineBreaks(name + ": " + value);
    // libcurl's own form for a header without a value.
    addHeader(value.empty() ? withoutLineBreaks(name) + ";" : line);
  }
  // Without these lines libcurl adds the two by itself; the first would cost a round trip.
  if (!sends("Expect")) addHeader("Expect:");
  if (!sends("Content-Type")) addHeader("Content-Type:");
  curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, headers_);
}

void CurlTransfer::addHeader(const std::string& line) {
  headers_ = curl_slist_append(headers_, line.c_str());
}

bool CurlTransfer::isHTTP() const {
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
  if (curl_url_set(url.get(), CURLUPART_URL, request_.url.c_str(), 0) != CURLUE_OK) return false;
  char* part = nullptr;
  curl_url_get(url.get(), CURLUPART_SCHEME, &part, 0);
  const std::unique_ptr<char, decltype(&curl_free)> scheme(part, &curl_free);
  return scheme &&
         (equalsIgnoringCase(scheme.get(), "http") || equalsIgnoringCase(scheme.get(), "https"));
}

void CurlTransfer::prepare() {
  response_ = {};
  problem_.front() = '\0';
  bytesMoved_ = 0;
}

MonotonicTime CurlTransfer::deadline() const {
  const Duration idle = request_.timeout.value_or(configuration_.timeoutForRequest);
  return std::min(lastByte_ + orNever(idle), begun_ + orNever(configuration_.timeoutForResource));
}

CurlFailure CurlTransfer::failure(CURLcode code) const {
  CurlFailure failure{code, 0};
  curl_easy_getinfo(handle_, CURLINFO_OS_ERRNO, &failure.osError);
  return failure;
}

std::string CurlTransfer::message(CURLcode code) const {
  return problem_.front() ? problem_.data() : curl_easy_strerror(code);
}

void CurlTransfer::succeed() {
  long status = 0;
  curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status);
  response_.status = static_cast<int>(status);
  done_(URLResponse(std::move(response_)));
}

void CurlTransfer::succeedWithoutHTTP() {
  done_(URLResponse(NotHTTPResponse{}));
}

void CurlTransfer::fail(URLErrorCode code, std::string message) {
  done_(URLError(code, std::move(message)));
}

std::size_t CurlTransfer::receiveBody(char* bytes, std::size_t size, std::size_t count,
                                      void* self) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  transfer.response_.body.append(bytes, size * count);
  transfer.lastByte_ = monotonicNow();
  return size * count;
}

std::size_t CurlTransfer::receiveHeader(char* bytes, std::size_t size, std::size_t count,
                                        void* self) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  transfer.headerLine({bytes, size * count});
  transfer.lastByte_ = monotonicNow();
  return size * count;
}

void CurlTransfer::headerLine(std::string_view line) {
  // A redirection and an interim answer have headers of their own; the last block counts.
  if (line.starts_with("HTTP/")) return response_.headers.clear();
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return;
  response_.headers.emplace_back(withoutBlanks(line.substr(0, colon)),
                                 withoutBlanks(line.substr(colon + 1)));
}

int CurlTransfer::seeProgress(void* self, curl_off_t, curl_off_t down, curl_off_t, curl_off_t up) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  if (std::exchange(transfer.bytesMoved_, down + up) != down + up)
    transfer.lastByte_ = monotonicNow();
  return 0;
}

}  // namespace quillo::linux_host
