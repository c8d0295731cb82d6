// The lists of terms that go with requests to the hosted service.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/user_defaults.h"

namespace quillo {

// The items trimmed, without blank ones and without repeats (whatever their case; the first
// spelling wins), at most `limit` of them.
std::vector<std::string> cleanedTerms(const std::vector<std::string>& items, std::size_t limit);

// What the text service must leave as it is.
std::vector<std::string> preserveTermsList(const std::vector<std::string>& usedSnippets,
                                           const std::vector<std::string>& vocabulary,
                                           const std::vector<TextDictionary>& replacements);

// What the speech service should expect to hear.
std::vector<std::string> transcriptionVocabulary(const std::vector<std::string>& vocabulary,
                                                 const std::vector<TextDictionary>& replacements,
                                                 const std::vector<TextDictionary>& glossary,
                                                 const std::vector<TextDictionary>& snippets);

}  // namespace quillo
