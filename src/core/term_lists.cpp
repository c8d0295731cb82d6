#include "core/term_lists.h"

#include <set>

#include "base/text.h"

namespace quillo {
namespace {

constexpr std::size_t longestTermList = 100;

void append(std::vector<std::string>& list, const std::vector<std::string>& items) {
  list.insert(list.end(), items.begin(), items.end());
}

void appendIfPresent(std::vector<std::string>& list, const TextDictionary& record,
                     const std::string& key) {
  if (const auto found = record.find(key); found != record.end()) list.push_back(found->second);
}

}  // namespace

std::vector<std::string> cleanedTerms(const std::vector<std::string>& items, std::size_t limit) {
  std::vector<std::string> kept;
  std::set<std::string> seen;
  for (const std::string& item : items) {
    if (kept.size() == limit) break;
    std::string term = trimmed(item);
    if (term.empty() || !seen.insert(canonicalForm(lowercased(term))).second) continue;
    kept.push_back(std::move(term));
  }
  return kept;
}

std::vector<std::string> preserveTermsList(const std::vector<std::string>& usedSnippets,
                                           const std::vector<std::string>& vocabulary,
                                           const std::vector<TextDictionary>& replacements) {
  std::vector<std::string> list = usedSnippets;
  append(list, vocabulary);
  for (const TextDictionary& rule : replacements) appendIfPresent(list, rule, "to");
  return cleanedTerms(list, longestTermList);
}

std::vector<std::string> transcriptionVocabulary(const std::vector<std::string>& vocabulary,
                                                 const std::vector<TextDictionary>& replacements,
                                                 const std::vector<TextDictionary>& glossary,
                                                 const std::vector<TextDictionary>& snippets) {
  std::vector<std::string> list = vocabulary;
  for (const TextDictionary& rule : replacements) appendIfPresent(list, rule, "to");
  for (const TextDictionary& entry : glossary) {
    appendIfPresent(list, entry, "from");
    appendIfPresent(list, entry, "to");
  }
  for (const TextDictionary& snippet : snippets) appendIfPresent(list, snippet, "cue");
  return cleanedTerms(list, longestTermList);
}

}  // namespace quillo
