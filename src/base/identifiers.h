// New identifiers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

// A random UUID (RFC 4122, version 4): 36 characters, upper case.
std::string uuidText(std::uint64_t high, std::uint64_t low);

// The UUID in canonical upper-case form, or nothing when the text is none.
std::optional<std::string> canonicalUuid(std::string_view text);

}  // namespace quillo
