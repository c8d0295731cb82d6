// Where the hosted service lives. Deployment constants, handed in by the composition root.
#pragma once

#include <string>

namespace quillo {

struct Backend {
  std::string projectRoot;   // without a slash at its end
  std::string anonymousKey;  // a public JSON Web Token (RFC 7519)

  std::string functionsRoot() const { return projectRoot + "/functions/v1"; }
};

}  // namespace quillo
