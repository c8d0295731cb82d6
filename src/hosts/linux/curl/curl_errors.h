// The numbers of libcurl as the numbers of the port.
#pragma once

#include <curl/curl.h>

#include "platform/url_session.h"

namespace quillo::linux_host {

// How a transfer ended that gave no reply.
struct CurlFailure {
  CURLcode code = CURLE_OK;
  long osError = 0;  // errno of the last failed connect, 0 if there was none
};

URLErrorCode urlErrorCode(const CurlFailure& failure);

// Whether the failure is one that a machine without a network would have.
bool looksOffline(const CurlFailure& failure);

}  // namespace quillo::linux_host
