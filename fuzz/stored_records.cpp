// Throws broken files at the readers of what the user has stored: profiles, instructions and
// history. They must come to an end, and what was read once is read again the same.
//
// Half of the bytes stand for pieces of such files, the rest for themselves.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "state/history_entry.h"
#include "state/prompt_instruction.h"
#include "state/writing_profile.h"

namespace {

using namespace quillo;

constexpr auto pieces = std::to_array<std::string_view>({
    "[",
    "]",
    "{",
    "}",
    ":",
    ",",
    "\"",
    "[{\"id\":",
    "\"id\":",
    "\"8B4B4F3C-2D9E-4C53-9C0B-0D6C8E0A1F11\"",
    "\"8b4b4f3c-2d9e-4c53-9c0b-0d6c8e0a1f11\"",
    "\"date\":",
    "\"2026-03-04T09:00:00Z\"",
    "\"rawTranscript\":\"a\",\"finalText\":\"b\",",
    "\"inputLanguage\":\"en-US\",",
    "\"outputLanguage\":\"de\",",
    "\"targetAppName\":",
    "\"name\":\"Work\",",
    "\"tone\":\"professional\",",
    "\"formatStyle\":\"bullets\",",
    "\"transformMode\":\"improve\",",
    "\"kind\":\"saved\",",
    "\"promptMode\":\"promptOnly\",",
    "\"voice\":\"make it mine\",",
    "\"style\":\"short\",",
    "\"bubble\":true,",
    "\"text\":\"make it short\",",
    "null",
    "true",
    "1.5",
    "1e999",
    "-0",
    "\\uD800",
    "\\u0000",
    "\"\"",
});

std::string textFrom(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (value % 2 == 0)
      text += pieces[value / 2 % pieces.size()];
    else
      text += byte;
  }
  return text;
}

void requireSame(const Bytes& first, const Bytes& again) {
  if (first == again) return;
  std::cerr << "read differently: " << first << "\n and then: " << again << '\n';
  std::abort();
}

template <class Decode, class Encode>
void checkReader(const std::string& text, Decode decode, Encode encode) {
  const auto read = decode(text);
  if (!read) return;
  const Bytes written = encode(*read);
  const auto again = decode(written);
  if (!again) std::abort();
  requireSame(written, encode(*again));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = textFrom({reinterpret_cast<const char*>(data), size});
  checkReader(text, decodeProfiles, encodeProfiles);
  checkReader(text, decodeInstructions, encodeInstructions);
  checkReader(text, decodeHistory, encodeHistory);
  return 0;
}
