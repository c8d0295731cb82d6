// Replacement rules, snippets and term lists.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "core/replacement_rules.h"
#include "core/snippets.h"
#include "core/term_lists.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Rules = std::vector<TextDictionary>;

TextDictionary rule(std::string from, std::string to) {
  return {{"from", std::move(from)}, {"to", std::move(to)}};
}
TextDictionary snippet(std::string cue, std::string text) {
  return {{"cue", std::move(cue)}, {"text", std::move(text)}};
}

TEST(ReplacementRulesTest, AdaptsTheCaseUnlessTheUserChoseIt) {
  EXPECT_EQ(matchCase("lyft", "lift"), "lyft");
  EXPECT_EQ(matchCase("lyft", "Lift"), "Lyft");
  EXPECT_EQ(matchCase("lyft", "LIFT"), "LYFT");
  EXPECT_EQ(matchCase("iPhone", "EYE PHONE"), "iPhone");
  EXPECT_EQ(matchCase("straße", "ROAD"), "STRASSE");
  EXPECT_EQ(matchCase("ähre", "Ear"), "Ähre");
  EXPECT_EQ(matchCase("x", "A"), "X") << "one capital letter is a capitalised word";
  EXPECT_EQ(matchCase("euro", "三"), "euro") << "there is no case to adapt to";
  EXPECT_EQ(matchCase("2nd", "Second"), "2nd");
}

TEST(ReplacementRulesTest, ReplacesWholeWordsWhateverTheirCase) {
  EXPECT_EQ(applyReplacements({rule(" lift ", "lyft")}, "Lift, LIFT and a lift; lifted shoplift"),
            "Lyft, LYFT and a lyft; lifted shoplift");
  EXPECT_EQ(applyReplacements({rule("c.", "see")}, "c. cx"), "c. cx")
      << "a word boundary behind a full stop needs a letter";
  EXPECT_EQ(applyReplacements({rule("a.b", "dot")}, "a.b axb"), "dot axb");
  EXPECT_EQ(applyReplacements({rule("groß", "klein")}, "GROSS, Groß, größer"),
            "KLEIN, Klein, größer");
  EXPECT_EQ(applyReplacements({rule("a a", "b")}, "xa a a"), "xa b");
  EXPECT_EQ(applyReplacements({rule("kelvin", "degree")}, "a \u212Aelvin"), "a Degree");
}

TEST(ReplacementRulesTest, MatchesInsideTextOfScriptsWithoutWordSpaces) {
  EXPECT_EQ(applyReplacements({rule("東京", "Tokyo")}, "私は東京に住む"), "私はTokyoに住む");
  EXPECT_EQ(applyReplacements({rule("กรุงเทพ", "Bangkok")}, "อยู่กรุงเทพมา"), "อยู่Bangkokมา");
  EXPECT_EQ(applyReplacements({rule("a東", "x")}, "ba東京"), "bx京");
  EXPECT_EQ(applyReplacements({rule("мир", "свет")}, "мирный мир"), "мирный свет");
}

TEST(ReplacementRulesTest, LeavesOutWhatCannotAct) {
  TextDictionary off = rule("cat", "dog");
  off["enabled"] = "false";
  TextDictionary on = rule("sun", "moon");
  on["enabled"] = "true";
  const Rules rules = {off,
                       on,
                       rule(" ", "x"),
                       rule("cat", ""),
                       {{"from", "cat"}},
                       {{"to", "dog"}},
                       rule("cow", " ")};
  EXPECT_EQ(applyReplacements(rules, "cat sun cow"), "cat moon  ") << "\"to\" is not trimmed";
  EXPECT_EQ(applyReplacements({}, "cat"), "cat");
  EXPECT_EQ(applyReplacements(rules, ""), "");
}

// The rules as they are written down: a regular expression a rule over the whole text.
std::string replaceSlowly(const Rules& rules, std::string text) {
  for (const TextDictionary& each : rules) {
    const std::string& from = each.at("from");
    const bool isWord = from.find("語") == std::string::npos;
    const std::string edge = isWord ? "\\b" : "";
    const auto pattern =
        Regex::compile(edge + Regex::escaped(from) + edge, Regex::Case::insensitive);
    const auto matches = pattern->matches(text);
    for (auto match = matches.rbegin(); match != matches.rend(); ++match) {
      const std::size_t length = match->end - match->begin;
      text.replace(match->begin, length,
                   matchCase(each.at("to"), text.substr(match->begin, length)));
    }
  }
  return text;
}

TEST(ReplacementRulesTest, FindsWhatAPlainSearchFinds) {
  const std::vector<std::string> pieces = {
      "a",       "A", "b", "ss", "ß", "S", " ",      "-", "\u212A", "k",           "語",
      "e\u0301", "İ", "ﬁ", "f",  "i", ".", "\u200D", "Σ", "ς",      "👩‍👧", "\xff"};
  std::mt19937 random(20);
  const auto some = [&](std::size_t atLeast, std::size_t atMost) {
    std::string text;
    const std::size_t count = atLeast + random() % (atMost - atLeast + 1);
    for (std::size_t i = 0; i < count; ++i) text += pieces[random() % pieces.size()];
    return text;
  };
  int changed = 0;
  for (int round = 0; round < 3000; ++round) {
    Rules rules;
    while (rules.size() < 4) {
      const std::string from = trimmed(some(1, 3));
      if (!from.empty()) rules.push_back(rule(from, some(1, 3)));
    }
    const std::string text = some(0, 60);
    const std::string expected = replaceSlowly(rules, text);
    changed += expected != text;
    ASSERT_EQ(applyReplacements(rules, text), text.empty() ? "" : expected) << text;
  }
  EXPECT_GT(changed, 500) << "many rounds must have something to find";
}

TEST(SnippetsTest, TypesTheTextAsItStands) {
  const auto result = applySnippets(
      {snippet("my address", "1 Main St\nSpringfield"), snippet("sig", " Best, Ada ")},
      "Send it to MY ADDRESS please. Sig");
  EXPECT_EQ(result.text, "Send it to 1 Main St\nSpringfield please. Best, Ada");
  EXPECT_THAT(result.used, ElementsAre("1 Main St\nSpringfield", "Best, Ada"));
}

TEST(SnippetsTest, LongerCuesGoFirst) {
  const auto result = applySnippets({snippet("sign", "S1"), snippet("sign off now", "S3"),
                                     snippet("sign off", "S2"), snippet("SIGN", "unreached")},
                                    "sign off now, sign off, sign");
  EXPECT_EQ(result.text, "S3, S2, S1");
  EXPECT_THAT(result.used, ElementsAre("S3", "S2", "S1"));
}

TEST(SnippetsTest, LeavesOutWhatLacksCueOrText) {
  const auto result = applySnippets(
      {snippet(" ", "x"), snippet("cat", " \n"), {{"cue", "cat"}}, {{"text", "cat"}}}, "cat");
  EXPECT_EQ(result.text, "cat");
  EXPECT_THAT(result.used, IsEmpty());
}

TEST(TermListsTest, CleansLists) {
  EXPECT_THAT(cleanedTerms({" Lyft\n", "", "lyft", "LYFT ", "Caf\u00e9", "cafe\u0301", "x"}, 9),
              ElementsAre("Lyft", "Caf\u00e9", "x"));
  EXPECT_THAT(cleanedTerms({"a", "A", "b", "c"}, 2), ElementsAre("a", "b"));
}

TEST(TermListsTest, CollectsTermsInOrder) {
  const Rules rules = {rule("x", "Rule"), {{"from", "y"}}};
  EXPECT_THAT(preserveTermsList({"Snippet", "vocab"}, {"Vocab", "Term"}, rules),
              ElementsAre("Snippet", "vocab", "Term", "Rule"));
  EXPECT_THAT(transcriptionVocabulary({"Term"}, rules, {rule("from", "to"), {{"to", "alone"}}},
                                      {snippet("cue", "text")}),
              ElementsAre("Term", "Rule", "from", "to", "alone", "cue"));
  std::vector<std::string> many;
  for (int i = 0; i < 150; ++i) many.push_back("term " + std::to_string(i));
  EXPECT_THAT(preserveTermsList({"first"}, many, {}), SizeIs(100));
}

}  // namespace
}  // namespace quillo
