#include "service/polish_rules.h"

#include <array>

#include "base/text.h"
#include "service/contractions.h"

namespace quillo::service {
namespace {

constexpr std::array<std::string_view, 9> hesitations{"um", "umm", "uh",  "uhm", "uhh",
                                                      "er", "erm", "hmm", "mm"};

// "You know" and "I mean" have a meaning of their own before or behind one of these.
struct FillerPhrase {
  std::string_view first;
  std::string_view second;
};
constexpr std::array fillerPhrases{FillerPhrase{"you", "know"}, FillerPhrase{"i", "mean"}};
constexpr std::array<std::string_view, 11> meaningfulBefore{
    "do", "did", "does", "if", "that", "let", "as", "what", "when", "don't", "didn't"};
constexpr std::array<std::string_view, 22> meaningfulAfter{
    "what", "how",  "why",  "who",  "when", "where", "that", "if", "about", "him",  "her",
    "it",   "them", "this", "your", "me",   "us",    "the",  "a",  "an",    "well", "business"};

constexpr std::array<std::string_view, 7> doubledOnPurpose{"that", "had", "very", "really",
                                                           "so",   "no",  "bye"};

struct Wording {
  std::string_view casual;
  std::string_view plain;
};
constexpr std::array plainWordings{
    Wording{"gonna", "going to"}, Wording{"wanna", "want to"}, Wording{"gotta", "have to"},
    Wording{"kinda", "rather"},   Wording{"yeah", "yes"},      Wording{"yep", "yes"},
    Wording{"nope", "no"},        Wording{"ok", "all right"},  Wording{"okay", "all right"},
    Wording{"hey", "hello"},      Wording{"hi", "hello"},      Wording{"thanks", "thank you"},
};

std::string lowerAt(const Pieces& pieces, std::ptrdiff_t index) {
  const bool inside = index >= 0 && index < std::ssize(pieces);
  return inside ? lowercased(pieces[index].text) : std::string();
}

// Drops the pieces from `first` to `last`, the comma behind them, and the blank before.
// Gives the index at which to go on.
std::ptrdiff_t erasePhrase(Pieces& pieces, std::ptrdiff_t first, std::ptrdiff_t last) {
  if (last + 1 < std::ssize(pieces) && pieces[last + 1].isMark(",")) ++last;
  const bool blankBefore = first > 0 && pieces[first - 1].kind == PieceKind::space;
  const bool blankBehind =
      last + 1 < std::ssize(pieces) && pieces[last + 1].kind == PieceKind::space;
  if (blankBefore) {
    --first;
  } else if (blankBehind) {
    ++last;
  }
  pieces.erase(pieces.begin() + first, pieces.begin() + last + 1);
  return first;
}

bool isFillerPhrase(const Pieces& pieces, std::ptrdiff_t first, std::ptrdiff_t second) {
  const auto phrase =
      std::find_if(fillerPhrases.begin(), fillerPhrases.end(), [&](const FillerPhrase& candidate) {
        return candidate.first == lowerAt(pieces, first) &&
               candidate.second == lowerAt(pieces, second);
      });
  return phrase != fillerPhrases.end() && onlySpaceBetween(pieces, first, second) &&
         !isOneOf(lowerAt(pieces, previousContent(pieces, first - 1)), meaningfulBefore) &&
         !isOneOf(lowerAt(pieces, nextContent(pieces, second + 1)), meaningfulAfter);
}

std::string inCaseOf(std::string_view model, std::string_view text) {
  return isUppercase(model) && !isUppercase(text) ? capitalisedFirst(text) : std::string(text);
}

void writeInFull(Piece& piece) {
  const std::string word = lowercased(piece.text);
  for (const Contraction& contraction : contractions)
    if (lowercased(contraction.contracted) == word)
      piece.text = inCaseOf(piece.text, contraction.full);
  for (const Wording& wording : plainWordings)
    if (wording.casual == word) piece.text = inCaseOf(piece.text, wording.plain);
}

// "do not" becomes "don't" when both words stand beside each other.
void contract(Pieces& pieces, std::ptrdiff_t first) {
  const std::ptrdiff_t second = nextContent(pieces, first + 1);
  const bool pair = second < std::ssize(pieces) && pieces[second].isWord() &&
                    onlySpaceBetween(pieces, first, second);
  const std::string both =
      pair ? lowerAt(pieces, first) + " " + lowerAt(pieces, second) : lowerAt(pieces, first);
  // At the end of a clause "I am" stays in full.
  const bool clauseEnd = nextContent(pieces, second + 1) >= std::ssize(pieces);
  for (const Contraction& contraction : contractions) {
    if (lowercased(contraction.full) != both) continue;
    if (pair && clauseEnd && !contraction.full.ends_with("not")) continue;
    pieces[first].text = inCaseOf(pieces[first].text, contraction.contracted);
    if (pair) pieces.erase(pieces.begin() + first + 1, pieces.begin() + second + 1);
    return;
  }
}

}  // namespace

void dropFillers(Pieces& pieces) {
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces);) {
    const std::ptrdiff_t second = nextContent(pieces, i + 1);
    if (pieces[i].isWord() && isOneOf(lowerAt(pieces, i), hesitations)) {
      i = erasePhrase(pieces, i, i);
    } else if (pieces[i].isWord() && isFillerPhrase(pieces, i, second)) {
      i = erasePhrase(pieces, i, second);
    } else {
      ++i;
    }
  }
}

void dropRepetitions(Pieces& pieces) {
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces);) {
    const std::ptrdiff_t second = nextContent(pieces, i + 1);
    const bool repeated = pieces[i].isWord() && second < std::ssize(pieces) && second > i + 1 &&
                          onlySpaceBetween(pieces, i, second) && pieces[second].isWord() &&
                          lowerAt(pieces, i) == lowerAt(pieces, second) &&
                          !isOneOf(lowerAt(pieces, i), doubledOnPurpose);
    if (repeated) {
      pieces.erase(pieces.begin() + i + 1, pieces.begin() + second + 1);
    } else {
      ++i;
    }
  }
}

void applyTone(Pieces& pieces, Tone tone) {
  if (tone == Tone::neutral) return;
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces); ++i) {
    if (!pieces[i].isWord()) continue;
    if (tone == Tone::professional) {
      writeInFull(pieces[i]);
    } else {
      contract(pieces, i);
    }
  }
}

}  // namespace quillo::service
