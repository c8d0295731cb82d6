#include "base/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/bytes.h"
#include "base/identifiers.h"
#include "base/iso8601.h"
#include "base/json.h"

namespace quillo {
namespace {

using testing::ElementsAre;

constexpr const char* family = "👨‍👩‍👧";
constexpr const char* composed = "\u00e9";     // é
constexpr const char* decomposed = "e\u0301";  // e + combining acute

TEST(TextTest, CountsAndCutsByUserPerceivedCharacters) {
  EXPECT_EQ(characterCount("a\r\nb"), 3u);
  EXPECT_EQ(characterCount(std::string(family) + "🇩🇪" + decomposed), 3u);
  EXPECT_EQ(characterCount(""), 0u);
  EXPECT_EQ(prefixCharacters(std::string("x") + family + "y", 2), std::string("x") + family);
  EXPECT_EQ(suffixCharacters(std::string("ab") + decomposed, 1), decomposed);
  EXPECT_EQ(dropFirstCharacters("a\r\nb", 2), "b");
  EXPECT_EQ(dropLastCharacters(std::string("b") + family, 1), "b");
  EXPECT_EQ(prefixCharacters("ab", 9), "ab");
  EXPECT_EQ(suffixCharacters("äb", 9), "äb");
  EXPECT_THAT(characters("é🇩🇪!"), ElementsAre("é", "🇩🇪", "!"));
  EXPECT_EQ(characterCount("\xff\xfe!"), 3u);  // ill-formed bytes are characters too
}

TEST(TextTest, KnowsLettersNumbersAndCase) {
  EXPECT_TRUE(isLetter("é") && isLetter("三") && isLetter(decomposed) && !isLetter("1"));
  EXPECT_TRUE(isNumber("7") && isNumber("½") && isNumber("三") && !isNumber("x"));
  EXPECT_TRUE(isUppercase("Ä") && !isUppercase("ä") && !isUppercase("三"));
  EXPECT_EQ(uppercased("straße"), "STRASSE");
  EXPECT_EQ(lowercased("İX"), "i̇x");
  EXPECT_EQ(capitalized("brazilian portuguese"), "Brazilian Portuguese");
}

TEST(TextTest, TrimsTheSetsOfThePlatform) {
  EXPECT_EQ(trimmed(" \t\n a b\u2028\r\n"), "a b");
  EXPECT_EQ(trimmed("\u00a0\ta\n", TrimSet::whitespace), "a\n");
  EXPECT_EQ(trimmed("\n a \u0085", TrimSet::newlines), " a ");
  EXPECT_EQ(trimmedOf("**“I cannot”_ ", "*_“” "), "I cannot");
  EXPECT_TRUE(isBlank(" \n") && !isBlank(" x"));
}

TEST(TextTest, ComparesByCanonicalEquivalence) {
  EXPECT_TRUE(textEquals(composed, decomposed));
  EXPECT_TRUE(textHasPrefix(std::string(decomposed) + "t", composed));
  EXPECT_TRUE(textHasSuffix(std::string("t") + composed, decomposed));
  EXPECT_FALSE(textHasPrefix(decomposed, "e"));  // half a character is no prefix
  EXPECT_TRUE(containsIgnoringCaseAndDiacritics("Zoé", "OE"));
  EXPECT_TRUE(containsIgnoringCase("Daily LIMIT reached", "limit"));
  EXPECT_FALSE(containsIgnoringCase("Zoé", "oe"));
}

TEST(TextTest, RegularExpressionsAreUnicodeAndGiveByteRanges) {
  const auto word = Regex::compile("\\bstraße\\b", Regex::Case::insensitive);
  ASSERT_TRUE(word);
  const std::string text = "Ärger: STRASSE, Straße, Straßen";
  const auto ranges = word->matches(text);
  std::vector<std::string> found;
  for (const auto& range : ranges)
    found.push_back(text.substr(range.begin, range.end - range.begin));
  EXPECT_THAT(found, ElementsAre("STRASSE", "Straße"));
  EXPECT_FALSE(Regex::compile("(", Regex::Case::sensitive));
  EXPECT_EQ(Regex::compile(Regex::escaped("a.b[c]{2}"), Regex::Case::sensitive)
                ->matches("a.b[c]{2} axb")
                .size(),
            1u);
}

TEST(TextTest, NamesLanguagesInEnglishAndNumbersInTheirShortestForm) {
  EXPECT_EQ(englishIdentifierName("pt-BR"), "Portuguese (Brazil)");
  EXPECT_EQ(englishLanguageName("xx"), std::nullopt);
  EXPECT_EQ(englishIdentifierName("not a code"), std::nullopt);
  EXPECT_EQ(shortestText(1.0), "1.0");
  EXPECT_EQ(shortestText(1.0 / 60), "0.016666666666666666");
  EXPECT_EQ(shortestText(0.00005), "5e-05");
}

TEST(JsonTest, StrictReadingNamesThePlace) {
  const auto reader = JsonReader::parseObject(
      R"({"a":1.0,"b":null,"o":{"n":1.5,"t":"x"},"list":[{"k":true}],"extra":0})");
  EXPECT_EQ(reader.integer("a"), 1);
  EXPECT_EQ(reader.optionalText("b"), std::nullopt);
  EXPECT_TRUE(reader.objects("list")[0].boolean("k"));
  const auto failure = [](auto read) -> std::string {
    try {
      read();
    } catch (const DecodingError& error) {
      return error.description();
    }
    return "no error";
  };
  EXPECT_EQ(failure([&] { reader.object("o").integer("n"); }), "o.n: is not an integer");
  EXPECT_EQ(failure([&] { reader.text("b"); }), "b: is missing");
  EXPECT_EQ(failure([&] { reader.objects("list")[0].text("k"); }), "list[0].k: is not a text");
  EXPECT_EQ(failure([&] { reader.optionalText("a"); }), "a: is not a text");
  EXPECT_EQ(failure([] { JsonReader::parseObject("<html>"); }), "is not JSON");
  EXPECT_EQ(failure([] { JsonReader::parseObject("[1]"); }), "is not an object");
}

TEST(JsonTest, KeepsTheOrderOfFieldsAndSurvivesBrokenBytes) {
  Json json;
  json["z"] = 1;
  json["a"] = "caf\xff";
  EXPECT_EQ(encodeJson(json), "{\"z\":1,\"a\":\"caf\ufffd\"}");
  EXPECT_EQ(lenientText(json, "z"), std::nullopt);
  EXPECT_EQ(lenientBoolean(Json::parse(R"({"b":false})"), "b"), false);
}

TEST(FormatsTest, TimesIdentifiersAndBytesReadBack) {
  const auto date = dateFromIso8601("2026-03-04T09:15:02Z");
  ASSERT_TRUE(date);
  EXPECT_EQ(iso8601(*date + std::chrono::milliseconds(999)), "2026-03-04T09:15:02Z");
  for (const char* wrong : {"2026-02-30T00:00:00Z", "2026-03-04 09:15:02Z", "2026-03-04T24:00:00Z",
                            "2026-03-04T09:15:02", "2026-03-04T09:15:0xZ"})
    EXPECT_EQ(dateFromIso8601(wrong), std::nullopt) << wrong;

  const std::string uuid = uuidText(0x0123456789abcdefULL, ~0ULL);
  EXPECT_EQ(uuid, "01234567-89AB-4DEF-BFFF-FFFFFFFFFFFF");
  EXPECT_EQ(canonicalUuid(lowercased(uuid)), uuid);
  EXPECT_EQ(canonicalUuid("01234567-89AB-4DEF-BFFFFFFFFFFFFFFFF"), std::nullopt);

  for (const std::string& bytes : {std::string(), std::string("\0\xff", 2), std::string("abcd")})
    EXPECT_EQ(bytesFromBase64(base64(bytes)), bytes);
  EXPECT_EQ(base64("Quillo"), "UXVpbGxv");
  EXPECT_EQ(bytesFromBase64("UXV*"), std::nullopt);
  EXPECT_EQ(bytesFromBase64("UXV"), std::nullopt);
}

}  // namespace
}  // namespace quillo
