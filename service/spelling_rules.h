// Slips of spelling and of the article.
#pragma once

#include <string>

#include "service/dictionary.h"
#include "service/language_model.h"
#include "service/pieces.h"
#include "service/pronunciation.h"

namespace quillo::service {

// Recognised speech holds no slips of the finger, only unknown names.
enum class TextOrigin { typed, spoken };

// Lower-case words that the dictionary does not know get the capitals of a proper name, as
// "tuesday" and "usb", or, when they were typed, become a word of almost the same letters.
// `model` chooses among several in English; without one the dictionary's order does.
void correctWords(Pieces& pieces, TextOrigin origin, const Dictionary& dictionary,
                  const LanguageModel* model);

// "dont" becomes "don't", "i" becomes "I".
void repairContractions(Pieces& pieces);

// "a apple" becomes "an apple", by the sound of the next word.
void agreeArticles(Pieces& pieces, Pronunciation& pronunciation);

// The fewest letters to add, drop, change or swap with a neighbour (optimal string alignment).
std::size_t editDistance(std::string_view a, std::string_view b);

}  // namespace quillo::service
