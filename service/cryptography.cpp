#include "service/cryptography.h"

#include <sodium.h>

#include <array>
#include <cstdio>
#include <stdexcept>

#include "base/identifiers.h"

namespace quillo::service {
namespace {

void prepareLibrary() {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw std::runtime_error("libsodium is not usable");
}

}  // namespace

std::string newToken() {
  prepareLibrary();
  std::array<unsigned char, 32> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  constexpr int variant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;
  std::string text(sodium_base64_ENCODED_LEN(bytes.size(), variant), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), variant);
  text.pop_back();  // the terminating zero
  return text;
}

std::string newIdentifier() {
  prepareLibrary();
  std::array<std::uint64_t, 2> bits{};
  randombytes_buf(bits.data(), sizeof bits);
  return uuidText(bits[0], bits[1]);
}

std::string newOneTimeCode() {
  prepareLibrary();
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%06u", randombytes_uniform(1'000'000));
  return text.data();
}

std::string digest(std::string_view secret) {
  std::array<unsigned char, crypto_hash_sha256_BYTES> bytes{};
  crypto_hash_sha256(bytes.data(), reinterpret_cast<const unsigned char*>(secret.data()),
                     secret.size());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
  return sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
}

std::string passwordHash(std::string_view password, PasswordCost cost) {
  prepareLibrary();
  std::array<char, crypto_pwhash_STRBYTES> text{};
  if (crypto_pwhash_str_alg(text.data(), password.data(), password.size(), cost.passes,
                            cost.memoryBytes, crypto_pwhash_ALG_ARGON2ID13) != 0)
    throw std::runtime_error("not enough memory to hash a password");
  return text.data();
}

bool passwordMatches(std::string_view password, const std::string& hash) {
  prepareLibrary();
  return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

}  // namespace quillo::service
