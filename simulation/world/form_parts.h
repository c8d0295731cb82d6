// What is in the body of a request.
#pragma once

#include <string>

#include "base/json.h"
#include "platform/url_session.h"

namespace quillo::sim {

// The parts of a multipart form by name: the text, or for the file its name.
Json formParts(const std::string& contentType, const Bytes& body);

// The parts of a form, or a JSON body, or else the bytes as they are.
Json partsOf(const URLRequest& request);

}  // namespace quillo::sim
