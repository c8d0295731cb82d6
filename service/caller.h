// Who makes a request of the dictation API.
#pragma once

#include <string>

#include "service/accounts.h"
#include "service/http_message.h"

namespace quillo::service {

enum class CallerKind { guest, account };

struct Caller {
  CallerKind kind = CallerKind::guest;
  std::string userId;  // an account's id, or a guest's key
  std::string plan;
  std::string deviceId;  // of the installation, as it names itself
  std::string machine;   // what the device cap counts: the hardware, or else the installation
};

// By "X-Quillo-API-Key", an access token or "mx_" and the device's id, and the device headers.
// Refuses missing headers, and keys that are unknown, expired or of another device.
Caller identifyCaller(const HttpRequest& request, Accounts& accounts);

}  // namespace quillo::service
