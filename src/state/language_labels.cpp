#include "state/language_labels.h"

#include <algorithm>
#include <optional>

#include "base/text.h"

namespace quillo {
namespace {

// Narrower than the table of languages on purpose: the rest start in English.
constexpr auto startingLanguages = std::to_array<std::string_view>({
    "ar", "bn", "cs", "da", "nl", "fa", "tl", "fi", "fr", "de", "el", "he", "hi", "hu", "id",
    "it", "ja", "ko", "ku", "ms", "nb", "pl", "ro", "ru", "es", "sv", "th", "tr", "uk", "vi",
});
static_assert(startingLanguages.size() == 30);

std::string beforeHyphen(std::string_view code) {
  return std::string(code.substr(0, code.find('-')));
}

}  // namespace

Words languageLabel(std::string_view code) {
  if (code.empty() || code == automaticLanguage) return words("Auto");
  const std::string language = beforeHyphen(code);
  if (const auto name = englishLanguageName(language))
    return languageNamed(capitalized(*name), language);
  const auto name = englishIdentifierName(code);
  return name ? languageNamed(*name, std::string(code)) : asItStands(std::string(code));
}

Words languagePairLabel(std::string_view input, std::string_view output) {
  return words("{input} → {output}",
               {{"input", languageLabel(input)}, {"output", languageLabel(output)}});
}

std::string primaryLanguage(std::string_view code) {
  return lowercased(beforeHyphen(code));
}

std::string initialInputLanguage(const std::vector<std::string>& preferredLanguages) {
  const std::string first = preferredLanguages.empty() ? "en" : preferredLanguages.front();
  std::string language = prefixCharacters(lowercased(first), 2);
  if (language == "zh") return "zh-CN";
  if (language == "pt") return "pt-BR";
  if (std::ranges::find(startingLanguages, language) != startingLanguages.end()) return language;
  return defaultLanguage;
}

}  // namespace quillo
