#include "base/identifiers.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <optional>

namespace quillo {

std::string uuidText(std::uint64_t high, std::uint64_t low) {
  high = (high & ~0xF000ULL) | 0x4000ULL;    // version 4
  low = (low & ~(3ULL << 62)) | 1ULL << 63;  // variant 1
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%08X-%04X-%04X-%04X-%012llX",
                static_cast<unsigned>(high >> 32), static_cast<unsigned>(high >> 16 & 0xFFFF),
                static_cast<unsigned>(high & 0xFFFF), static_cast<unsigned>(low >> 48),
                static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
  return buffer.data();
}

std::optional<std::string> canonicalUuid(std::string_view text) {
  if (text.size() != 36) return std::nullopt;
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
    const auto c = static_cast<unsigned char>(text[i]);
    if (hyphen ? c != '-' : !std::isxdigit(c)) return std::nullopt;
    out += static_cast<char>(std::toupper(c));
  }
  return out;
}

}  // namespace quillo
