#include "core/snippets.h"

#include <algorithm>

namespace quillo {
namespace {

std::string trimmedValue(const TextDictionary& record, const std::string& key) {
  const auto found = record.find(key);
  return found == record.end() ? std::string() : trimmed(found->second);
}

}  // namespace

Snippets::Snippets(const std::vector<TextDictionary>& snippets) {
  const auto longerFirst = [](const Snippet& a, const Snippet& b) {
    return a.cue.characterCount() > b.cue.characterCount();
  };
  for (const TextDictionary& record : snippets) {
    const std::string cue = trimmedValue(record, "cue");
    std::string text = trimmedValue(record, "text");
    if (cue.empty() || text.empty()) continue;
    Snippet snippet{Cue(cue), std::move(text)};
    // Behind those of the same length.
    const auto place = std::upper_bound(snippets_.begin(), snippets_.end(), snippet, longerFirst);
    snippets_.insert(place, std::move(snippet));
  }
}

Snippets::Result Snippets::apply(std::string_view text) const {
  if (snippets_.empty() || text.empty()) return {std::string(text), {}};
  CueText result(text);
  std::vector<std::string> used;
  for (const Snippet& snippet : snippets_) {
    const auto asItStands = [&snippet](std::string_view) { return snippet.text; };
    if (result.replaceAll(snippet.cue, asItStands) > 0) used.push_back(snippet.text);
  }
  return {result.text(), std::move(used)};
}

Snippets::Result applySnippets(const std::vector<TextDictionary>& snippets, std::string_view text) {
  return Snippets(snippets).apply(text);
}

}  // namespace quillo
