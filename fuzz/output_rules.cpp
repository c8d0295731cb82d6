// Throws texts at the rules for the text service's output: they must come to an end, keep what they
// do not strip, and be stable where nothing is left to strip.
//
// Half of the bytes stand for pieces that the rules know, the rest for themselves, so that inputs
// are full of preambles, marks and broken characters from the start.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "base/text.h"
#include "core/output_validation.h"

namespace {

using namespace quillo;

constexpr auto pieces = std::to_array<std::string_view>({
    "Here is the translation:",
    "translation:",
    "OUTPUT:",
    "Texto transformado:",
    "U\u0308bersetzung:",
    "翻译：",
    "번역:",
    "Перевод:",
    "\"",
    "「",
    "」",
    "『",
    "』",
    "«",
    "»",
    "As an AI",
    "i can't help with that",
    "als ki",
    "作为AI",
    "*",
    "“",
    "’",
    " ",
    "\t",
    "\n",
    "\r\n",
    "\u0301",
    "\u200D",
    "\u0600",
    "👩‍👧",
    "🇩🇪",
    "\u00A0",
    "\u2028",
    "İ",
    "ß",
    "Σ",
    "½",
    "a",
    "word ",
});

std::string textFrom(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (value % 2 == 0) {
      text += pieces[value / 2 % pieces.size()];
    } else {
      text += byte;
    }
  }
  return text;
}

void require(bool holds, const char* promise, std::string_view text) {
  if (holds) return;
  std::cerr << promise << ": \"" << text << "\"\n";
  std::abort();
}

// Cleans until nothing changes any more; each pass takes something away.
std::string fullyCleaned(std::string text) {
  while (true) {
    std::string next = cleanOutput(text);
    require(text.find(next) != std::string::npos, "cleaning only takes away at the ends", text);
    require(trimmed(next) == next, "a cleaned text is trimmed", text);
    if (next == text) return text;
    require(next.size() < text.size(), "each pass takes something away", text);
    text = std::move(next);
  }
}

// Whether a mark beside the text is a character of its own there.
bool standsApart(const std::string& mark, const std::string& text) {
  return characterCount(mark + text + mark) == characterCount(text) + 2;
}

void checkCleaning(const std::string& text) {
  const std::string clean = fullyCleaned(text);
  if (clean.empty()) return;
  require(cleanOutput("Here is the translation: " + clean) == clean, "a preamble goes", clean);
  if (standsApart("\"", clean))
    require(cleanOutput("\"" + clean + "\"") == clean, "quotation marks go", clean);
}

bool isAccepted(std::string_view original, std::string_view transformed) {
  return std::holds_alternative<Accepted>(validateOutput(original, transformed));
}

void checkVerdict(const std::string& original, const std::string& transformed) {
  const bool accepted = isAccepted(original, transformed);
  require(!accepted || !isBlank(transformed), "a blank text is refused", transformed);
  require(isAccepted(" " + original + "\n", "\t" + transformed + " ") == accepted,
          "blanks at the ends do not count", transformed);
  require(!isAccepted(original, "**As an AI " + transformed), "a refusal is refused", transformed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t half = bytes.size() / 2;
  checkCleaning(textFrom(bytes));
  checkVerdict(textFrom(bytes.substr(0, half)), textFrom(bytes.substr(half)));
  return 0;
}
