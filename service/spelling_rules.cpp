#include "service/spelling_rules.h"

#include "base/text.h"
#include "service/contractions.h"

namespace quillo::service {
namespace {

constexpr std::size_t shortestCorrected = 3;
constexpr std::size_t longWord = 8;
// Suggestions take up to 50 ms a word; a text of more unknown words is not prose.
constexpr std::size_t maximumLookups = 100;

std::size_t allowedDistance(std::size_t letters) {
  return letters < longWord ? 1 : 2;
}

// What the dictionary suggests for each unknown word of a text, looked up once.
class Suggestions {
 public:
  explicit Suggestions(const Dictionary& dictionary) : dictionary_(dictionary) {}

  const std::vector<std::string>& of(const std::string& word) {
    static const std::vector<std::string> none;
    const auto known = known_.find(word);
    if (known != known_.end()) return known->second;
    if (known_.size() == maximumLookups) return none;
    return known_.emplace(word, dictionary_.suggestions(word)).first->second;
  }

 private:
  const Dictionary& dictionary_;
  std::map<std::string, std::vector<std::string>> known_;
};

bool hasSameLetters(const std::string& a, const std::string& b) {
  return characterCount(a) == characterCount(b) && containsIgnoringCaseAndDiacritics(a, b);
}

// The same letters with their accents, or in the case of a proper name or an abbreviation.
std::optional<std::string> variant(const std::string& word, const Dictionary& dictionary,
                                   const std::vector<std::string>& suggestions) {
  const auto accented =
      std::find_if(suggestions.begin(), suggestions.end(), [&word](const std::string& suggestion) {
        return isLowercase(suggestion) && hasSameLetters(suggestion, word);
      });
  if (accented != suggestions.end()) return *accented;
  std::string name = capitalisedFirst(word);
  if (dictionary.knows(name)) return name;
  const auto other = std::find_if(
      suggestions.begin(), suggestions.end(),
      [&word](const std::string& suggestion) { return hasSameLetters(suggestion, word); });
  return other != suggestions.end() ? std::optional(*other) : std::nullopt;
}

bool isUnknownLowercase(const Piece& piece, const Dictionary& dictionary) {
  return piece.isWord() && isLowercase(piece.text) && !dictionary.knows(piece.text);
}

// "alot" is one of the few slips that lost a blank.
bool isLostBlank(const std::string& suggestion, std::string_view word) {
  return word.starts_with('a') && suggestion.starts_with("a ") &&
         std::string_view(suggestion).substr(2) == word.substr(1);
}

bool isNear(const std::string& suggestion, const std::string& word) {
  return suggestion.find_first_of(" -") == std::string::npos && isLowercase(suggestion) &&
         editDistance(word, suggestion) <= allowedDistance(characterCount(word));
}

std::vector<std::string> corrections(const std::string& word,
                                     const std::vector<std::string>& suggestions) {
  if (!suggestions.empty() && isLostBlank(suggestions.front(), word)) return {suggestions.front()};
  std::vector<std::string> near;
  std::copy_if(suggestions.begin(), suggestions.end(), std::back_inserter(near),
               [&word](const std::string& suggestion) { return isNear(suggestion, word); });
  return near;
}

std::string neighbour(const Pieces& pieces, std::ptrdiff_t index) {
  const bool inside = index >= 0 && index < std::ssize(pieces);
  return inside && pieces[index].isWord() ? lowercased(pieces[index].text) : std::string();
}

LanguageModel::Place placeOf(const Pieces& pieces, std::ptrdiff_t index) {
  const std::ptrdiff_t last = previousContent(pieces, index - 1);
  return {neighbour(pieces, previousContent(pieces, last - 1)), neighbour(pieces, last),
          neighbour(pieces, nextContent(pieces, index + 1))};
}

const std::string& likeliest(const std::vector<std::string>& candidates,
                             const LanguageModel::Place& place, const LanguageModel& model) {
  return *std::max_element(candidates.begin(), candidates.end(),
                           [&](const std::string& a, const std::string& b) {
                             return model.score(a, place) < model.score(b, place);
                           });
}

const Contraction* contractionOfSlip(std::string_view word) {
  for (const Contraction& contraction : contractions)
    if (!word.empty() && contraction.slip == word) return &contraction;
  return nullptr;
}

bool isPronounI(std::string_view word) {
  return word == "i" || word.starts_with("i'") || word.starts_with("i’");
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
  const auto from = scalars(a);
  const auto to = scalars(b);
  // Row i holds the distances of the first i letters of `from` to every beginning of `to`.
  std::vector<std::vector<std::size_t>> rows(from.size() + 1,
                                             std::vector<std::size_t>(to.size() + 1));
  for (std::size_t i = 0; i <= from.size(); ++i) rows[i][0] = i;
  for (std::size_t j = 0; j <= to.size(); ++j) rows[0][j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t change = from[i - 1] == to[j - 1] ? 0 : 1;
      rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + change});
      const bool swapped = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (swapped) rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
    }
  }
  return rows[from.size()][to.size()];
}

void correctWords(Pieces& pieces, TextOrigin origin, const Dictionary& dictionary,
                  const LanguageModel* model) {
  Suggestions suggestions(dictionary);
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces); ++i) {
    Piece& piece = pieces[i];
    if (!isUnknownLowercase(piece, dictionary)) continue;
    const auto& suggested = suggestions.of(piece.text);
    if (auto same = variant(piece.text, dictionary, suggested)) {
      piece.text = *std::move(same);
      continue;
    }
    if (origin == TextOrigin::spoken || characterCount(piece.text) < shortestCorrected) continue;
    const auto candidates = corrections(piece.text, suggested);
    if (candidates.empty()) continue;
    piece.text = model ? likeliest(candidates, placeOf(pieces, i), *model) : candidates.front();
  }
}

void repairContractions(Pieces& pieces) {
  for (Piece& piece : pieces) {
    if (!piece.isWord()) continue;
    if (const auto* contraction = contractionOfSlip(lowercased(piece.text))) {
      const bool capital = isUppercase(piece.text);
      piece.text = capital ? capitalisedFirst(contraction->contracted) : contraction->contracted;
    } else if (isPronounI(piece.text)) {
      piece.text.front() = 'I';
    }
  }
}

void agreeArticles(Pieces& pieces, Pronunciation& pronunciation) {
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces); ++i) {
    const std::string article = lowercased(pieces[i].text);
    if (!pieces[i].isWord() || (article != "a" && article != "an")) continue;
    const std::ptrdiff_t next = nextContent(pieces, i + 1);
    const bool adjoining = next < std::ssize(pieces) && next > i + 1 &&
                           onlySpaceBetween(pieces, i, next) && pieces[next].isWord();
    if (!adjoining || pronunciation.phones(pieces[next].text).empty()) continue;
    const bool capital = isUppercase(pieces[i].text);
    const bool vowel = pronunciation.beginsWithVowelSound(pieces[next].text);
    pieces[i].text = std::string(capital ? "A" : "a") + (vowel ? "n" : "");
  }
}

}  // namespace quillo::service
