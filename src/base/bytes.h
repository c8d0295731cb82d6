// Bytes, and their base64 form (RFC 4648).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillo {

// Bytes of any kind; not necessarily text.
using Bytes = std::string;

std::string base64(std::string_view bytes);
// Nothing for text that is not base64 with its padding.
std::optional<Bytes> bytesFromBase64(std::string_view text);

}  // namespace quillo
