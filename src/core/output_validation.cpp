#include "core/output_validation.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace quillo {
namespace {

using namespace std::string_view_literals;

// In the order of the pass: a text may lose several, but only in this order. The last five open a
// quotation.
constexpr std::array preambles = {
    "Here is the transformed text:"sv,
    "Here's the transformed text:"sv,
    "Here is the translation:"sv,
    "Here's the translation:"sv,
    "Transformed text:"sv,
    "Translation:"sv,
    "Output:"sv,
    "Result:"sv,
    "Aquí está el texto transformado:"sv,
    "Aquí está la traducción:"sv,
    "Texto transformado:"sv,
    "Traducción:"sv,
    "Voici le texte transformé:"sv,
    "Voici la traduction:"sv,
    "Texte transformé:"sv,
    "Traduction:"sv,
    "Hier ist der transformierte Text:"sv,
    "Hier ist die Übersetzung:"sv,
    "Transformierter Text:"sv,
    "Übersetzung:"sv,
    "Aqui está o texto transformado:"sv,
    "Aqui está a tradução:"sv,
    "Texto transformado:"sv,
    "Tradução:"sv,
    "Ecco il testo trasformato:"sv,
    "Ecco la traduzione:"sv,
    "Testo trasformato:"sv,
    "Traduzione:"sv,
    "Her er den transformerte teksten:"sv,
    "Her er oversettelsen:"sv,
    "Transformert tekst:"sv,
    "Oversettelse:"sv,
    "Här är den transformerade texten:"sv,
    "Här är översättningen:"sv,
    "Transformerad text:"sv,
    "Översättning:"sv,
    "Hier is de getransformeerde tekst:"sv,
    "Hier is de vertaling:"sv,
    "Getransformeerde tekst:"sv,
    "Vertaling:"sv,
    "ها هو النص المحول:"sv,
    "ها هي الترجمة:"sv,
    "النص المحول:"sv,
    "الترجمة:"sv,
    "这是转换后的文本："sv,
    "这是翻译："sv,
    "转换后的文本："sv,
    "翻译："sv,
    "これが変換されたテキストです："sv,
    "これが翻訳です："sv,
    "変換されたテキスト："sv,
    "翻訳："sv,
    "변환된 텍스트입니다:"sv,
    "번역입니다:"sv,
    "변환된 텍스트:"sv,
    "번역:"sv,
    "Вот преобразованный текст:"sv,
    "Вот перевод:"sv,
    "Преобразованный текст:"sv,
    "Перевод:"sv,
    "\""sv,
    "「"sv,
    "『"sv,
    "«"sv,
    "»"sv,
};
static_assert(preambles.size() == 65);

constexpr std::array closings = {"\""sv, "」"sv, "』"sv, "»"sv, "«"sv};

// How a refusal begins, in lower case.
constexpr std::array refusals = {
    "as an ai"sv,
    "as a language model"sv,
    "as an artificial intelligence"sv,
    "i cannot fulfill"sv,
    "i can't fulfill"sv,
    "i cannot assist with"sv,
    "i can't assist with"sv,
    "i cannot comply"sv,
    "i cannot help with that"sv,
    "i can't help with that"sv,
    "como una ia"sv,
    "como un modelo de lenguaje"sv,
    "como inteligencia artificial"sv,
    "en tant qu'ia"sv,
    "en tant que modèle de langage"sv,
    "en tant qu'intelligence artificielle"sv,
    "als ki"sv,
    "als sprachmodell"sv,
    "als künstliche intelligenz"sv,
    "como uma ia"sv,
    "como um modelo de linguagem"sv,
    "como uma inteligência artificial"sv,
    "come ia"sv,
    "come modello linguistico"sv,
    "come intelligenza artificiale"sv,
    "som en ai"sv,
    "som en språkmodell"sv,
    "som en kunstig intelligens"sv,
    "som en ai"sv,
    "som en språkmodell"sv,
    "som en artificiell intelligens"sv,
    "als ai"sv,
    "als taalmodel"sv,
    "als kunstmatige intelligentie"sv,
    "كنموذج لغوي"sv,
    "بصفتي ذكاء اصطناعي"sv,
    "作为ai"sv,
    "作为一个语言模型"sv,
    "作为人工智能"sv,
    "aiとして"sv,
    "言語モデルとして"sv,
    "人工知能として"sv,
    "ai로서"sv,
    "언어 모델로서"sv,
    "인공지능으로서"sv,
    "как ии"sv,
    "как языковая модель"sv,
    "как искусственный интеллект"sv,
};
static_assert(refusals.size() == 48);

// What a refusal may be dressed in.
constexpr std::string_view emphasisMarks = "\"'“”«»‘’*_ ";

// Longer than every entry of the tables, so that a prefix test needs no more of a text.
constexpr std::size_t headCharacters = 64;

constexpr float leastRatio = 0.1f;
constexpr float greatestRatio = 10.0f;
// A shorter original may well grow into a sentence.
constexpr std::size_t longestThatMayGrow = 10;

std::string loweredHead(std::string_view text) {
  return lowercased(prefixCharacters(text, headCharacters));
}

std::string withoutPreambles(std::string text) {
  std::string head = loweredHead(text);
  for (const std::string_view preamble : preambles) {
    if (!textHasPrefix(head, lowercased(preamble))) continue;
    text = trimmed(dropFirstCharacters(text, characterCount(preamble)), TrimSet::whitespace);
    head = loweredHead(text);
  }
  return text;
}

std::string withoutClosings(std::string text) {
  for (const std::string_view closing : closings) {
    if (textHasSuffix(text, closing) && !textHasPrefix(text, closing)) {
      text = dropLastCharacters(text, characterCount(closing));
    }
  }
  return text;
}

bool isRefusal(std::string_view text) {
  const std::string bare = loweredHead(trimmedOf(text, emphasisMarks));
  return std::any_of(refusals.begin(), refusals.end(),
                     [&bare](std::string_view phrase) { return textHasPrefix(bare, phrase); });
}

struct CharacterCounts {
  std::size_t all = 0;
  std::size_t lettersAndNumbers = 0;
};

CharacterCounts countCharacters(std::string_view text) {
  CharacterCounts counts;
  forEachCharacter(text, [&counts](std::string_view character) {
    ++counts.all;
    if (isLetter(character) || isNumber(character)) ++counts.lettersAndNumbers;
  });
  return counts;
}

}  // namespace

std::string cleanOutput(std::string_view text) {
  return trimmed(withoutClosings(withoutPreambles(trimmed(text))));
}

ValidationVerdict validateOutput(std::string_view original, std::string_view transformed) {
  const std::string before = trimmed(original);
  const std::string after = trimmed(transformed);
  if (after.empty()) return Rejected{words("Transformation returned empty text")};
  if (isRefusal(after)) return Rejected{words("Transformation error - using original text")};

  const std::size_t beforeCount = characterCount(before);
  const CharacterCounts counts = countCharacters(after);
  const float ratio =
      static_cast<float>(counts.all) / static_cast<float>(std::max<std::size_t>(beforeCount, 1));
  if (ratio < leastRatio) return Rejected{words("Transformation too short")};
  if (ratio > greatestRatio && beforeCount > longestThatMayGrow) {
    return Rejected{words("Transformation too long")};
  }
  // More than four of five characters are neither.
  if (counts.all > 5 * counts.lettersAndNumbers) {
    return Rejected{words("Transformation contains mostly special characters")};
  }
  return Accepted{};
}

}  // namespace quillo
