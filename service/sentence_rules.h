// Where sentences begin and end, and how they are written.
#pragma once

#include <string_view>
#include <vector>

#include "service/pieces.h"

namespace quillo::service {

// The first content of each sentence.
std::vector<std::ptrdiff_t> sentenceStarts(const Pieces& pieces);

// A capital at the start of each sentence that begins with a lower-case word.
void capitaliseSentences(Pieces& pieces);

// A full stop or, in English after a question's first words, a question mark behind a last word.
void endSentence(Pieces& pieces, std::string_view language);

// One blank between words, none before a comma, one behind it.
void tidySpaces(Pieces& pieces);

// Spanish questions and exclamations open with a mark of their own.
void openSpanishQuestions(Pieces& pieces);

// In recognised speech: "new line", "new paragraph", "question mark", "exclamation mark",
// "exclamation point" and "full stop" are what they name.
void obeySpokenMarks(Pieces& pieces);

}  // namespace quillo::service
