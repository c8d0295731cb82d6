// Who asks, as the hosted service knows the user and this installation.
#pragma once

#include <string>

namespace quillo {

struct ClientIdentity {
  std::string apiKey;  // empty for a guest
  std::string deviceId;
};

}  // namespace quillo
