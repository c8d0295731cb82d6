// Terms that have one translation.
#pragma once

#include <string_view>
#include <vector>

#include "api/records.h"
#include "platform/user_defaults.h"

namespace quillo {

// The entries that apply to `outputLanguage`, each with its trimmed "from" and "to" alone. Only
// the language counts, not the region; an entry without a language applies to all.
std::vector<GlossaryEntry> glossaryFor(std::string_view outputLanguage,
                                       const std::vector<TextDictionary>& glossary);

}  // namespace quillo
