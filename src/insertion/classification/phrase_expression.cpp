#include "insertion/classification/phrase_expression.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "insertion/classification/field_phrases.h"

namespace quillo {
namespace {

std::string patternOf(std::span<const std::string_view> phrases) {
  std::vector<std::string> escaped;
  for (const std::string_view phrase : phrases) escaped.push_back(Regex::escaped(phrase));
  return R"((?<![\w.\-])(?:)" + joined(escaped, "|") + R"()(?![\w.\-]))";
}

Regex compiled(std::span<const std::string_view> phrases) {
  auto expression = Regex::compile(patternOf(phrases), Regex::Case::insensitive);
  if (!expression) throw std::logic_error("The phrases make no regular expression.");
  return *std::move(expression);
}

// What surely touches a phrase; of other scalars the expression decides.
bool isAsciiTokenCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '.' || c == '-';
}

}  // namespace

PhraseExpression::PhraseExpression(std::span<const std::string_view> phrases)
    : expression_(compiled(phrases)) {
  for (const std::string_view phrase : phrases) {
    std::string folded = caseFolded(phrase).text;
    phrases_[static_cast<unsigned char>(folded.front())].push_back(std::move(folded));
  }
}

bool PhraseExpression::mayStandAt(std::string_view folded, std::size_t at) const {
  if (at > 0 && isAsciiTokenCharacter(folded[at - 1])) return false;
  const std::string_view rest = folded.substr(at);
  return std::ranges::any_of(
      phrases_[static_cast<unsigned char>(rest.front())], [rest](const std::string& phrase) {
        return rest.starts_with(phrase) &&
               (rest.size() == phrase.size() || !isAsciiTokenCharacter(rest[phrase.size()]));
      });
}

bool PhraseExpression::matches(std::string_view text) const {
  const CaseFolded folded = caseFolded(text);
  for (std::size_t at = 0; at < folded.text.size(); ++at) {
    if (!mayStandAt(folded.text, at)) continue;
    const std::size_t start = folded.origins[at];
    if (!expression_.matchesAt(text, std::span(&start, 1)).empty()) return true;
  }
  return false;
}

const PhraseExpression& nonProseExpression() {
  static const PhraseExpression expression(nonProsePhrases);
  return expression;
}

const PhraseExpression& writingExpression() {
  static const PhraseExpression expression(writingPhrases);
  return expression;
}

}  // namespace quillo
