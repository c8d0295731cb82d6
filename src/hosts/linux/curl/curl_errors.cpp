#include "hosts/linux/curl/curl_errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr auto codes = std::to_array<std::pair<CURLcode, URLErrorCode>>({
    {CURLE_URL_MALFORMAT, URLErrorCode::badURL},
    {CURLE_UNSUPPORTED_PROTOCOL, URLErrorCode::badURL},
    {CURLE_OPERATION_TIMEDOUT, URLErrorCode::timedOut},
    {CURLE_COULDNT_RESOLVE_HOST, URLErrorCode::cannotFindHost},
    {CURLE_COULDNT_RESOLVE_PROXY, URLErrorCode::cannotFindHost},
    {CURLE_COULDNT_CONNECT, URLErrorCode::cannotConnectToHost},
    {CURLE_GOT_NOTHING, URLErrorCode::networkConnectionLost},
    {CURLE_PARTIAL_FILE, URLErrorCode::networkConnectionLost},
    {CURLE_SEND_ERROR, URLErrorCode::networkConnectionLost},
    {CURLE_RECV_ERROR, URLErrorCode::networkConnectionLost},
    {CURLE_SSL_CONNECT_ERROR, URLErrorCode::secureConnectionFailed},
    {CURLE_SSL_CIPHER, URLErrorCode::secureConnectionFailed},
    {CURLE_PEER_FAILED_VERIFICATION, URLErrorCode::serverCertificateUntrusted},
});

}  // namespace

URLErrorCode urlErrorCode(const CurlFailure& failure) {
  const auto* const found =
      std::ranges::find(codes, failure.code, [](const auto& c) { return c.first; });
  return found == codes.end() ? URLErrorCode::badServerResponse : found->second;
}

bool looksOffline(const CurlFailure& failure) {
  return failure.code == CURLE_COULDNT_RESOLVE_HOST ||
         (failure.code == CURLE_COULDNT_CONNECT &&
          (failure.osError == ENETUNREACH || failure.osError == EHOSTUNREACH));
}

}  // namespace quillo::linux_host
