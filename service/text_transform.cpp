#include "service/text_transform.h"

#include "base/text.h"
#include "service/languages.h"
#include "service/sentence_rules.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

// A selection of fewer words may be a heading or a part of a sentence.
constexpr std::size_t wordsOfASentence = 4;
// Below this the text is in another language after all, or is no prose.
constexpr double leastShareToCorrect = 0.4;

bool isHesitant(const Pieces& pieces) {
  Pieces fluent = pieces;
  dropFillers(fluent);
  dropRepetitions(fluent);
  return fluent.size() != pieces.size();
}

bool improves(TransformMode mode, const Pieces& pieces) {
  return mode == TransformMode::improve || (mode == TransformMode::automatic && isHesitant(pieces));
}

bool isSentence(const Pieces& pieces, TextOrigin origin) {
  if (origin == TextOrigin::spoken) return true;
  return static_cast<std::size_t>(std::count_if(pieces.begin(), pieces.end(), [](const Piece& p) {
           return p.isContent();
         })) >= wordsOfASentence;
}

// Scripts without capitals end their sentences with other marks, or with none.
bool hasCapitals(const Pieces& pieces) {
  return std::any_of(pieces.begin(), pieces.end(), [](const Piece& piece) {
    return piece.isWord() && lowercased(piece.text) != uppercased(piece.text);
  });
}

void finish(Pieces& pieces, const std::string& language, TextOrigin origin) {
  if (hasCapitals(pieces) && isSentence(pieces, origin)) endSentence(pieces, language);
  if (language == "es") openSpanishQuestions(pieces);
  capitaliseSentences(pieces);
}

std::string inCase(const std::string& text, LetterCase letterCase) {
  switch (letterCase) {
    case LetterCase::asItIs:
      return text;
    case LetterCase::upper:
      return uppercased(text);
    case LetterCase::lower:
      return lowercased(text);
  }
  return text;
}

}  // namespace

TextTransform::TextTransform(const Dictionaries& dictionaries, Pronunciation& pronunciation,
                             const Translator& translator)
    : dictionaries_(dictionaries), pronunciation_(pronunciation), translator_(translator) {}

std::string TextTransform::transformed(const TransformRequest& request) const {
  const Instructions instructions = instructionsFrom(request.prompt);
  if (request.promptUse == PromptUse::alone && !instructions.understood())
    throw ServiceError(422, "prompt_not_understood",
                       "The development service follows only prompts such as \"as bullets\", "
                       "\"in capital letters\" or \"translate to Spanish\".");

  Pieces pieces = Terms(request.terms, dictionaries_.english()).cut(trimmed(request.text));
  const std::string target = instructions.targetLanguage.value_or(request.targetLanguage);
  const std::string source =
      request.sourceLanguage.value_or(languageOf(pieces, dictionaries_).value_or(target));
  if (source != target) demandPair(source, target);
  clean(pieces, source, request, instructions);
  if (source != target) {
    pieces = translator_.translated(pieces, source, target);
    tidySpaces(pieces);
    finish(pieces, target, request.origin);
  }
  const std::string text =
      laidOut(trimmed(textOf(pieces)), instructions.layout.value_or(request.layout));
  return inCase(text, instructions.letterCase);
}

void TextTransform::clean(Pieces& pieces, const std::string& language,
                          const TransformRequest& request, const Instructions& instructions) const {
  const bool english = language == "en";
  const bool alone = request.promptUse == PromptUse::alone;
  if (english && request.origin == TextOrigin::spoken) obeySpokenMarks(pieces);
  const bool improve = !alone && improves(request.mode, pieces);
  if (english && (improve || instructions.withoutFillers)) {
    dropFillers(pieces);
    dropRepetitions(pieces);
  }
  const Tone tone = instructions.tone.value_or(improve ? request.tone : Tone::neutral);
  if (english) applyTone(pieces, tone);
  if (alone) return;
  correct(pieces, language, request.origin);
  finish(pieces, language, request.origin);
}

void TextTransform::correct(Pieces& pieces, const std::string& language, TextOrigin origin) const {
  const Dictionary* dictionary = dictionaries_.find(language);
  if (!dictionary) return;
  const bool english = language == "en";
  if (english) repairContractions(pieces);
  if (shareOfKnownWords(pieces, *dictionary) >= leastShareToCorrect)
    correctWords(pieces, origin, *dictionary, english ? &englishModel_ : nullptr);
  if (english) agreeArticles(pieces, pronunciation_);
  tidySpaces(pieces);
}

void TextTransform::demandPair(const std::string& from, const std::string& to) const {
  if (translator_.translates(from, to)) return;
  throw ServiceError(422, "translation_unavailable",
                     "The development service cannot translate from " + languageName(from) +
                         " to " + languageName(to) + ".");
}

}  // namespace quillo::service
