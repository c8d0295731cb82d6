// Languages as requests name them, and as texts show them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "service/dictionary.h"
#include "service/pieces.h"

namespace quillo::service {

// "en-US", "English" and "English (United States)" all give "en"; nothing for what names no
// language.
std::optional<std::string> languageFrom(std::string_view codeOrEnglishName);

// The English name of a code that `languageFrom` gave.
std::string languageName(const std::string& code);

// How many of the words the dictionary knows, from 0 to 1.
double shareOfKnownWords(const Pieces& pieces, const Dictionary& dictionary);

// The language most of whose words the text has, among those with a dictionary; nothing when they
// are few, or when two languages know equally many.
std::optional<std::string> languageOf(const Pieces& pieces, const Dictionaries& dictionaries);

}  // namespace quillo::service
