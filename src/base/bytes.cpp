#include "base/bytes.h"

#include <array>
#include <cstdint>

namespace quillo {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(std::string_view bytes) {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view group = bytes.substr(i, 3);
    std::uint32_t bits = 0;
    for (std::size_t k = 0; k < 3; ++k)
      bits = bits << 8 | (k < group.size() ? static_cast<unsigned char>(group[k]) : 0u);
    for (std::size_t k = 0; k < 4; ++k)
      out += k <= group.size() ? alphabet[bits >> (18 - 6 * k) & 63] : '=';
  }
  return out;
}

std::optional<Bytes> bytesFromBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  Bytes out;
  for (std::size_t i = 0; i < text.size(); i += 4) {
    const std::string_view group = text.substr(i, 4);
    std::size_t padding = 0;
    if (i + 4 == text.size()) padding = group.ends_with("==") ? 2 : group.ends_with('=') ? 1 : 0;
    std::uint32_t bits = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      const std::size_t value = k < 4 - padding ? alphabet.find(group[k]) : 0;
      if (value == std::string_view::npos) return std::nullopt;
      bits = bits << 6 | static_cast<std::uint32_t>(value);
    }
    for (std::size_t k = 0; k < 3 - padding; ++k)
      out += static_cast<char>(bits >> (16 - 8 * k) & 255);
  }
  return out;
}

}  // namespace quillo
