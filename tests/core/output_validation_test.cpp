#include "core/output_validation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/text.h"

namespace quillo {
namespace {

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

// The reason of a rejection, or "" for an accepted text.
std::string judge(std::string_view original, std::string_view transformed) {
  const ValidationVerdict verdict = validateOutput(original, transformed);
  const auto* rejected = std::get_if<Rejected>(&verdict);
  return std::string(rejected ? rejected->reason.english() : "");
}

struct CleanCase {
  std::string text;
  std::string cleaned;
};

const CleanCase cleanCases[] = {
    {"Here is the translation: Hola", "Hola"},
    {"HERE IS THE TRANSLATION:\tHola \n", "Hola"},
    {"here's the transformed text:\nHola", "Hola"},
    {"U\u0308BERSETZUNG: Hallo", "Hallo"},  // decomposed, and in capitals
    {"翻译：你好", "你好"},
    {"Translation: Output: x", "x"},
    {"Output: Translation: x", "Translation: x"},  // against the order of the list
    {"Translation: Translation: x", "Translation: x"},
    {"Texto transformado: Texto transformado: x", "x"},  // stands there twice
    {"Translation:\n\"x\"", "\"x"},                      // a line feed hides the opening mark
    {"\"quoted\"", "quoted"},
    {"「引用」", "引用"},
    {"«Zitat»", "Zitat"},
    {"»Zitat«", "Zitat"},
    {"「\"both\"」", "\"both\""},  // straight marks come first in both lists
    {"He said \"no\"", "He said \"no"},
    {"\"", ""},
    {"」x」", "」x」"},          // what begins with the mark as well keeps it
    {"\"\u0301x", "\"\u0301x"},  // a mark with an accent is another character
    {" \n ", ""},
    {"Translationx: y", "Translationx: y"}};

TEST(CleanOutputTest, RemovesWhatModelsPutAroundAnAnswer) {
  for (const auto& [text, cleaned] : cleanCases) EXPECT_EQ(cleanOutput(text), cleaned) << text;
}

TEST(ValidateOutputTest, RejectsEmptyTextAndRefusals) {
  EXPECT_EQ(judge("hello", " \n"), "Transformation returned empty text");
  const std::string refusal = "Transformation error - using original text";
  for (const char* text :
       {"As an AI, I cannot do that.", "**I cannot assist with** that", "“_'I can't fulfill",
        "Als Sprachmodell kann ich das nicht", "En tant qu'IA, je", "作为AI，我不能", "AIとしては",
        "Som en sprakmodell"}) {
    EXPECT_EQ(judge("hello", text), text == std::string("Som en sprakmodell") ? "" : refusal)
        << text;
  }
  EXPECT_EQ(judge("hello", "I met a man who spoke as an AI would"), "");
}

TEST(ValidateOutputTest, WantsACredibleLength) {
  const std::string hundred = repeated("a", 100);
  EXPECT_EQ(judge(hundred, repeated("b", 9)), "Transformation too short");
  EXPECT_EQ(judge(hundred, repeated("b", 10)), "");
  EXPECT_EQ(judge("ab", repeated("b", 60)), "");
  EXPECT_EQ(judge(repeated("a", 10), repeated("b", 1000)), "");
  EXPECT_EQ(judge(repeated("a", 11), repeated("b", 110)), "");
  EXPECT_EQ(judge(repeated("a", 11), repeated("b", 111)), "Transformation too long");
  EXPECT_EQ(judge("", "x"), "") << "an empty original counts as one character";
  EXPECT_EQ(judge(repeated("👨‍👩‍👧", 11), repeated("e\u0301", 110)), "")
      << "characters count, not bytes";
}

TEST(ValidateOutputTest, WantsWords) {
  const std::string marks = "Transformation contains mostly special characters";
  EXPECT_EQ(judge("wow", "!!!"), marks);
  EXPECT_EQ(judge("so happy", "🎉🎉 👍"), marks);
  EXPECT_EQ(judge("abc", "a!!!!"), "") << "exactly one fifth passes";
  EXPECT_EQ(judge("abc", "a!!!!!"), marks);
  EXPECT_EQ(judge("half", "½"), "");
}

}  // namespace
}  // namespace quillo
