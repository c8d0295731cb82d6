#include "service/instructions.h"

#include <array>

#include "base/text.h"
#include "service/languages.h"
#include "service/pieces.h"

namespace quillo::service {
namespace {

template <class Value>
struct Phrase {
  std::string_view text;
  Value value;
};

// In each table the first phrase that the prompt holds decides.
constexpr std::array layoutPhrases{
    Phrase<Layout>{"bullet", Layout::bullets},
    Phrase<Layout>{"one paragraph", Layout::oneBlock},
    Phrase<Layout>{"single paragraph", Layout::oneBlock},
    Phrase<Layout>{"one block", Layout::oneBlock},
    Phrase<Layout>{"paragraphs", Layout::paragraphs},
};
constexpr std::array tonePhrases{
    Phrase<Tone>{"informal", Tone::friendly},         Phrase<Tone>{"casual", Tone::friendly},
    Phrase<Tone>{"friendly", Tone::friendly},         Phrase<Tone>{"formal", Tone::professional},
    Phrase<Tone>{"professional", Tone::professional},
};
constexpr std::array casePhrases{
    Phrase<LetterCase>{"uppercase", LetterCase::upper},
    Phrase<LetterCase>{"upper case", LetterCase::upper},
    Phrase<LetterCase>{"all caps", LetterCase::upper},
    Phrase<LetterCase>{"capital letters", LetterCase::upper},
    Phrase<LetterCase>{"lowercase", LetterCase::lower},
    Phrase<LetterCase>{"lower case", LetterCase::lower},
};
constexpr std::string_view fillerPhrase = "filler";

template <class Value, std::size_t size>
std::optional<Value> firstOf(std::string_view prompt,
                             const std::array<Phrase<Value>, size>& phrases) {
  for (const Phrase<Value>& phrase : phrases)
    if (prompt.find(phrase.text) != std::string_view::npos) return phrase.value;
  return std::nullopt;
}

// "Translate this into Spanish": the language behind "to" or "into".
std::optional<std::string> languageToTranslateTo(std::string_view prompt) {
  const std::size_t verb = prompt.find("translate");
  if (verb == std::string_view::npos) return std::nullopt;
  const Pieces pieces = piecesOf(prompt.substr(verb));
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces); ++i) {
    if (pieces[i].text != "to" && pieces[i].text != "into") continue;
    const std::ptrdiff_t next = nextContent(pieces, i + 1);
    if (next == std::ssize(pieces)) continue;
    if (auto language = languageFrom(pieces[next].text)) return language;
  }
  return std::nullopt;
}

}  // namespace

Instructions instructionsFrom(std::string_view prompt) {
  const std::string lower = lowercased(prompt);
  return {.layout = firstOf(lower, layoutPhrases),
          .tone = firstOf(lower, tonePhrases),
          .targetLanguage = languageToTranslateTo(lower),
          .letterCase = firstOf(lower, casePhrases).value_or(LetterCase::asItIs),
          .withoutFillers = lower.find(fillerPhrase) != std::string::npos};
}

}  // namespace quillo::service
