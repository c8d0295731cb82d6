// Languages to choose from, and languages as the user reads them.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

struct Language {
  std::string_view code;
  std::string_view name;
};

// What is offered for input and for output, in this order. A setting may hold any other code.
inline constexpr std::array<Language, 38> languages = {{
    {"ar", "Arabic"},
    {"bn", "Bengali"},
    {"zh-CN", "Chinese (Simplified)"},
    {"zh-TW", "Chinese (Traditional)"},
    {"cs", "Czech"},
    {"da", "Danish"},
    {"nl", "Dutch"},
    {"en-GB", "English (UK)"},
    {"en-US", "English (US)"},
    {"fa", "Persian"},
    {"tl", "Filipino"},
    {"fi", "Finnish"},
    {"fr", "French"},
    {"de", "German"},
    {"el", "Greek"},
    {"he", "Hebrew"},
    {"hi", "Hindi"},
    {"hu", "Hungarian"},
    {"id", "Indonesian"},
    {"it", "Italian"},
    {"ja", "Japanese"},
    {"ko", "Korean"},
    {"ku", "Kurdish (Kurmanji)"},
    {"ckb", "Kurdish (Sorani)"},
    {"ms", "Malay"},
    {"nb", "Norwegian (Bokmal)"},
    {"pl", "Polish"},
    {"pt-BR", "Portuguese (Brazil)"},
    {"pt-PT", "Portuguese (Portugal)"},
    {"ro", "Romanian"},
    {"ru", "Russian"},
    {"es", "Spanish"},
    {"sv", "Swedish"},
    {"th", "Thai"},
    {"tr", "Turkish"},
    {"uk", "Ukrainian"},
    {"ur", "Urdu"},
    {"vi", "Vietnamese"},
}};

inline constexpr const char* automaticLanguage = "auto";  // as input: detection
inline constexpr const char* defaultLanguage = "en-US";

// "de" gives "German", "auto" gives "Auto"; a code without an English name is its own label.
std::string languageLabel(std::string_view code);

// "English → German".
std::string languagePairLabel(std::string_view input, std::string_view output);

// "PT-br" gives "pt": the language of a tag, in lower case.
std::string primaryLanguage(std::string_view code);

// The spoken language to begin with, from the system's preferred ones ("pt-PT", "de-DE").
std::string initialInputLanguage(const std::vector<std::string>& preferredLanguages);

}  // namespace quillo
