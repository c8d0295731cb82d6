#include "state/glossary.h"

#include "base/text.h"
#include "state/language_labels.h"
#include "state/list_setting.h"

namespace quillo {

std::vector<GlossaryEntry> glossaryFor(std::string_view outputLanguage,
                                       const std::vector<TextDictionary>& glossary) {
  const std::string target = primaryLanguage(outputLanguage);
  std::vector<GlossaryEntry> applying;
  for (const TextDictionary& entry : glossary) {
    const std::string_view language = textUnder(entry, "lang");
    std::string from = trimmed(textUnder(entry, "from"));
    std::string to = trimmed(textUnder(entry, "to"));
    if (from.empty() || to.empty()) continue;
    if (!language.empty() && !textEquals(primaryLanguage(language), target)) continue;
    applying.push_back({std::move(from), std::move(to)});
  }
  return applying;
}

}  // namespace quillo
