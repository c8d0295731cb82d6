#include "bubble/selection_rules.h"

#include <algorithm>

#include "base/text.h"

namespace quillo {
namespace {

// None of them is a half of a surrogate pair.
bool isNewline(char16_t unit) {
  return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

bool isBlankCharacter(char c) {
  return c == ' ' || c == '\n' || c == '\t';
}

}  // namespace

bool isAcceptedSelection(std::string_view text) {
  // Counts no further than it must: a whole book may be selected.
  return !isBlank(text) && prefixCharacters(text, longestSelection).size() == text.size();
}

bool isLongEnough(std::string_view text, SelectionTrigger trigger) {
  if (trigger == SelectionTrigger::summon) return true;
  const std::string word = trimmed(text);
  return characterCount(word) >= shortSelection || std::ranges::any_of(word, isBlankCharacter);
}

std::optional<TextRange> paragraphAt(std::u16string_view text, std::int64_t caret) {
  const auto size = static_cast<std::int64_t>(text.size());
  const auto place = text.begin() + std::clamp<std::int64_t>(caret, 0, size);
  const auto end = std::find_if(place, text.end(), isNewline);
  const auto start = std::find_if(std::make_reverse_iterator(place), text.rend(), isNewline).base();
  const TextRange paragraph{start - text.begin(), end - start};
  if (paragraph.length < 1 || paragraph.length > longestParagraph) return std::nullopt;
  return paragraph;
}

}  // namespace quillo
