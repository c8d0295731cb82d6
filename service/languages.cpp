#include "service/languages.h"

#include <array>
#include <map>

#include "base/text.h"

namespace quillo::service {
namespace {

constexpr std::array<std::string_view, 2> detectable{"en", "es"};
constexpr double leastShareOfKnownWords = 0.6;
constexpr std::size_t wordsLookedAt = 200;

// The languages of three letters that the client offers, besides all of two letters.
constexpr std::array<std::string_view, 2> longCodes{"ckb", "fil"};

std::string baseOf(std::string_view code) {
  return lowercased(code.substr(0, code.find_first_of("-_")));
}

bool looksLikeCode(std::string_view text) {
  const std::string base = baseOf(text);
  return (base.size() == 2 || base.size() == 3) &&
         std::all_of(base.begin(), base.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// English name in lower case → code.
const std::map<std::string, std::string>& codesByName() {
  static const auto table = [] {
    std::map<std::string, std::string> codes;
    const auto add = [&codes](const std::string& code) {
      if (const auto name = englishLanguageName(code)) codes.emplace(lowercased(*name), code);
    };
    for (char first = 'a'; first <= 'z'; ++first)
      for (char second = 'a'; second <= 'z'; ++second) add({first, second});
    for (const std::string_view code : longCodes) add(std::string(code));
    return codes;
  }();
  return table;
}

}  // namespace

std::optional<std::string> languageFrom(std::string_view codeOrEnglishName) {
  const std::string text = trimmed(codeOrEnglishName);
  if (looksLikeCode(text) && englishLanguageName(baseOf(text))) return baseOf(text);
  const std::string name = trimmed(text.substr(0, text.find('(')));
  const auto found = codesByName().find(lowercased(name));
  if (found == codesByName().end()) return std::nullopt;
  return found->second;
}

std::string languageName(const std::string& code) {
  return englishLanguageName(code).value_or(code);
}

double shareOfKnownWords(const Pieces& pieces, const Dictionary& dictionary) {
  std::size_t words = 0;
  std::size_t known = 0;
  for (const Piece& piece : pieces) {
    if (!piece.isWord()) continue;
    if (dictionary.knows(lowercased(piece.text)) || dictionary.knows(piece.text)) ++known;
    if (++words == wordsLookedAt) break;
  }
  return words == 0 ? 0.0 : static_cast<double>(known) / static_cast<double>(words);
}

std::optional<std::string> languageOf(const Pieces& pieces, const Dictionaries& dictionaries) {
  std::optional<std::string> best;
  double most = leastShareOfKnownWords;
  for (const std::string_view language : detectable) {
    const double share = shareOfKnownWords(pieces, *dictionaries.find(language));
    if (best && share == most) return std::nullopt;
    if (share < most) continue;
    most = share;
    best = std::string(language);
  }
  return best;
}

}  // namespace quillo::service
