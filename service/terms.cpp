#include "service/terms.h"

#include "base/text.h"

namespace quillo::service {

struct Terms::Pattern {
  Regex regex;
  std::string written;
};

namespace {

// A single word that is ordinary when it stands in lower case.
bool isOrdinaryWord(const std::string& term, const Dictionary& english) {
  return term.find_first_of(" \n\t-") == std::string::npos && english.knows(lowercased(term));
}

std::optional<Regex> patternOf(const std::string& heard, const Dictionary& english) {
  const auto sensitivity =
      isOrdinaryWord(heard, english) ? Regex::Case::sensitive : Regex::Case::insensitive;
  return Regex::compile(
      R"((?<![\p{L}\p{M}\p{N}_]))" + Regex::escaped(heard) + R"((?![\p{L}\p{M}\p{N}_]))",
      sensitivity);
}

struct Claim {
  Regex::Range range;
  const std::string* written;
};

bool overlaps(const std::vector<Claim>& claims, Regex::Range range) {
  return std::any_of(claims.begin(), claims.end(), [range](const Claim& claim) {
    return range.begin < claim.range.end && claim.range.begin < range.end;
  });
}

}  // namespace

Term preserved(const std::string& term) {
  return {term, term};
}

Terms::Terms(const std::vector<Term>& terms, const Dictionary& english) {
  std::vector<const Term*> ordered;
  for (const Term& term : terms) ordered.push_back(&term);
  std::sort(ordered.begin(), ordered.end(), [](const Term* a, const Term* b) {
    return a->heard.size() != b->heard.size() ? a->heard.size() > b->heard.size() : a < b;
  });
  for (const Term* term : ordered) {
    if (isBlank(term->heard)) continue;
    if (auto regex = patternOf(trimmed(term->heard), english))
      patterns_.push_back(
          std::make_shared<const Pattern>(Pattern{*std::move(regex), term->written}));
  }
}

Pieces Terms::cut(std::string_view text) const {
  std::vector<Claim> claims;
  for (const auto& pattern : patterns_)
    for (const Regex::Range range : pattern->regex.matches(text))
      if (!overlaps(claims, range)) claims.push_back({range, &pattern->written});
  std::sort(claims.begin(), claims.end(),
            [](const Claim& a, const Claim& b) { return a.range.begin < b.range.begin; });

  Pieces pieces;
  std::size_t begin = 0;
  for (const Claim& claim : claims) {
    append(pieces, piecesOf(text.substr(begin, claim.range.begin - begin)));
    pieces.push_back({PieceKind::term, *claim.written});
    begin = claim.range.end;
  }
  append(pieces, piecesOf(text.substr(begin)));
  return pieces;
}

}  // namespace quillo::service
