#include "service/pieces.h"

#include "base/text.h"

namespace quillo::service {
namespace {

Regex mustCompile(std::string_view pattern) {
  return *Regex::compile(pattern, Regex::Case::sensitive);
}

const Regex& fixedPattern() {
  static const Regex pattern =
      mustCompile(R"((?:https?|ftp|mailto):\S*[\w/]|www\.\S*[\w/])"    // addresses
                  R"(|[\w.+-]+@[\w-]+(?:\.[\w-]+)+|[@#][\w-]+)"        // mail, mentions, tags
                  R"(|`[^`\n]+`|~?(?:/[\w.-]+){2,}/?)"                 // code, paths
                  R"(|\d+(?:[:.,/]\d+)+|\w+(?:\.\w+)+|\w*[\d_]\w*)");  // numbers, names with points
  return pattern;
}

const Regex& wordPattern() {
  static const Regex pattern = mustCompile(R"([\p{L}\p{M}]+(?:['’][\p{L}\p{M}]+)*)");
  return pattern;
}

bool isBreak(std::string_view character) {
  return character == "\n" || character == "\r\n" || character == "\r";
}

void addMarks(Pieces& pieces, std::string_view text) {
  for (std::string& character : characters(text)) {
    const PieceKind kind = isBreak(character)   ? PieceKind::lineBreak
                           : isBlank(character) ? PieceKind::space
                                                : PieceKind::mark;
    pieces.push_back({kind, std::move(character)});
  }
}

// Cuts out every match as a piece of `kind`; `rest` takes what lies between.
template <class Rest>
void cut(std::string_view text, const Regex& pattern, PieceKind kind, Pieces& pieces, Rest rest) {
  std::size_t begin = 0;
  for (const Regex::Range match : pattern.matches(text)) {
    rest(pieces, text.substr(begin, match.begin - begin));
    pieces.push_back({kind, std::string(text.substr(match.begin, match.end - match.begin))});
    begin = match.end;
  }
  rest(pieces, text.substr(begin));
}

void addWords(Pieces& pieces, std::string_view text) {
  if (!text.empty()) cut(text, wordPattern(), PieceKind::word, pieces, addMarks);
}

}  // namespace

Pieces piecesOf(std::string_view text) {
  Pieces pieces;
  cut(text, fixedPattern(), PieceKind::fixed, pieces, addWords);
  return pieces;
}

void append(Pieces& pieces, Pieces more) {
  std::move(more.begin(), more.end(), std::back_inserter(pieces));
}

std::string textOf(const Pieces& pieces) {
  std::string text;
  for (const Piece& piece : pieces) text += piece.text;
  return text;
}

std::ptrdiff_t nextContent(const Pieces& pieces, std::ptrdiff_t index) {
  while (index < std::ssize(pieces) && !pieces[index].isContent()) ++index;
  return index;
}

std::ptrdiff_t previousContent(const Pieces& pieces, std::ptrdiff_t index) {
  while (index >= 0 && !pieces[index].isContent()) --index;
  return index;
}

bool onlySpaceBetween(const Pieces& pieces, std::ptrdiff_t first, std::ptrdiff_t second) {
  for (std::ptrdiff_t i = first + 1; i < second; ++i)
    if (pieces[i].kind != PieceKind::space) return false;
  return true;
}

std::string capitalisedFirst(std::string_view text) {
  return uppercased(prefixCharacters(text, 1)) + dropFirstCharacters(text, 1);
}

bool isLowercase(std::string_view text) {
  return lowercased(text) == text;
}

}  // namespace quillo::service
