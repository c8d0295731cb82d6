// Languages to choose from, and languages as the user reads them.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/words.h"

namespace quillo {

struct Language {
  std::string_view code;
  Literal name;
};

// What is offered for input and for output, in this order. A setting may hold any other code.
inline constexpr std::array<Language, 38> languages = {{
    {"ar", words("Arabic")},
    {"bn", words("Bengali")},
    {"zh-CN", words("Chinese (Simplified)")},
    {"zh-TW", words("Chinese (Traditional)")},
    {"cs", words("Czech")},
    {"da", words("Danish")},
    {"nl", words("Dutch")},
    {"en-GB", words("English (UK)")},
    {"en-US", words("English (US)")},
    {"fa", words("Persian")},
    {"tl", words("Filipino")},
    {"fi", words("Finnish")},
    {"fr", words("French")},
    {"de", words("German")},
    {"el", words("Greek")},
    {"he", words("Hebrew")},
    {"hi", words("Hindi")},
    {"hu", words("Hungarian")},
    {"id", words("Indonesian")},
    {"it", words("Italian")},
    {"ja", words("Japanese")},
    {"ko", words("Korean")},
    {"ku", words("Kurdish (Kurmanji)")},
    {"ckb", words("Kurdish (Sorani)")},
    {"ms", words("Malay")},
    {"nb", words("Norwegian (Bokmal)")},
    {"pl", words("Polish")},
    {"pt-BR", words("Portuguese (Brazil)")},
    {"pt-PT", words("Portuguese (Portugal)")},
    {"ro", words("Romanian")},
    {"ru", words("Russian")},
    {"es", words("Spanish")},
    {"sv", words("Swedish")},
    {"th", words("Thai")},
    {"tr", words("Turkish")},
    {"uk", words("Ukrainian")},
    {"ur", words("Urdu")},
    {"vi", words("Vietnamese")},
}};

inline constexpr const char* automaticLanguage = "auto";  // as input: detection
inline constexpr const char* defaultLanguage = "en-US";

// "de" gives "German", "auto" gives "Auto"; a code without an English name is its own label.
Words languageLabel(std::string_view code);

// "English → German".
Words languagePairLabel(std::string_view input, std::string_view output);

// "PT-br" gives "pt": the language of a tag, in lower case.
std::string primaryLanguage(std::string_view code);

// The spoken language to begin with, from the system's preferred ones ("pt-PT", "de-DE").
std::string initialInputLanguage(const std::vector<std::string>& preferredLanguages);

}  // namespace quillo
