#include "service/vocabulary.h"

#include "base/text.h"
#include "service/pieces.h"

namespace quillo::service {
namespace {

constexpr std::size_t maximumTerms = 100;

}  // namespace

std::vector<std::string> vocabularyFrom(std::string_view field) {
  std::vector<std::string> terms;
  for (const std::string& part : split(field, ',')) {
    if (terms.size() == maximumTerms) break;
    std::string term = trimmed(part);
    if (!term.empty()) terms.push_back(std::move(term));
  }
  return terms;
}

std::vector<std::string> wordsOf(const std::vector<std::string>& terms) {
  std::vector<std::string> words;
  for (const std::string& term : terms)
    for (const Piece& piece : piecesOf(term))
      if (piece.isWord() && std::find(words.begin(), words.end(), piece.text) == words.end())
        words.push_back(piece.text);
  return words;
}

}  // namespace quillo::service
