// A text cut into words, blanks, marks and what no rule may touch.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillo::service {

enum class PieceKind {
  word,       // letters, with apostrophes inside
  space,      // one blank
  lineBreak,  // one
  mark,       // one character of punctuation or anything else
  fixed,      // an address, a path, a number, code: of no language
  term,       // text that the caller wants as it stands
};

struct Piece {
  PieceKind kind;
  std::string text;

  bool isWord() const { return kind == PieceKind::word; }
  bool isContent() const {
    return kind == PieceKind::word || kind == PieceKind::fixed || kind == PieceKind::term;
  }
  bool isMark(std::string_view mark) const { return kind == PieceKind::mark && text == mark; }
};

using Pieces = std::vector<Piece>;

// Without terms.
Pieces piecesOf(std::string_view text);
std::string textOf(const Pieces& pieces);

// The next word, fixed piece or term at or after `index` (at or before it), or the size (-1).
std::ptrdiff_t nextContent(const Pieces& pieces, std::ptrdiff_t index);
std::ptrdiff_t previousContent(const Pieces& pieces, std::ptrdiff_t index);
// Whether nothing but blanks lies between the two.
bool onlySpaceBetween(const Pieces& pieces, std::ptrdiff_t first, std::ptrdiff_t second);

// Adds all of `more` behind `pieces`.
void append(Pieces& pieces, Pieces more);

template <std::size_t size>
bool isOneOf(std::string_view text, const std::array<std::string_view, size>& set) {
  return std::find(set.begin(), set.end(), text) != set.end();
}

// With its first character in upper case.
std::string capitalisedFirst(std::string_view text);
bool isLowercase(std::string_view text);

}  // namespace quillo::service
