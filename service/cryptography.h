// Secrets, digests and password hashes, on libsodium. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillo::service {

// A 256-bit random token, as base64url.
std::string newToken();
// A random UUID (RFC 4122, version 4).
std::string newIdentifier();
// Six random decimal digits.
std::string newOneTimeCode();

// SHA-256, as lower-case hexadecimal; how tokens and codes are kept.
std::string digest(std::string_view secret);

// What Argon2id (RFC 9106) may take for one hash.
struct PasswordCost {
  std::uint64_t passes = 2;
  std::size_t memoryBytes = std::size_t{19} << 20;
};
std::string passwordHash(std::string_view password, PasswordCost cost);
bool passwordMatches(std::string_view password, const std::string& hash);

}  // namespace quillo::service
