#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/catalog.h"

namespace quillo {
namespace {

using testing::ElementsAre;

// What msgfmt makes of pairs of a literal and its translation.
Bytes compiled(const std::map<std::string, std::string>& translations) {
  const auto number = [](std::size_t value) {
    const auto four = static_cast<std::uint32_t>(value);
    return std::string(reinterpret_cast<const char*>(&four), sizeof four);
  };
  const std::size_t rows = translations.size();
  const std::size_t texts = 28 + 16 * rows;
  std::string literalRows, translationRows, pool;
  const auto row = [&](const std::string& text) {
    const std::string made = number(text.size()) + number(texts + pool.size());
    pool += text + '\0';
    return made;
  };
  for (const auto& [literal, translation] : translations) {
    literalRows += row(literal);
    translationRows += row(translation);
  }
  return number(0x950412de) + number(0) + number(rows) + number(28) + number(28 + 8 * rows) +
         number(0) + number(0) + literalRows + translationRows + pool;
}

TEST(WordsTest, AreEnglishUntilACatalogKnowsThem) {
  const auto days = [](int count) {
    return words(
        "{count, plural, one {# day} other {# days}} in {place}, it's {share, number, percent}",
        {{"count", count}, {"place", words("Rome")}, {"share", 0.5}});
  };
  const Words removed = words("Remove {what}", {{"what", asItStands("Rome {count}")}});
  EXPECT_EQ(days(1), "1 day in Rome, it's 50%");
  EXPECT_EQ(removed, "Remove Rome {count}");

  int asked = 0;
  Catalog german;
  german.define("settings", [&] { return ++asked, std::string("Einstellungen"); });
  german.add(
      "de",
      *CompiledCatalog::from(compiled(
          {{"", "Language: de"},
           {"Open System Settings", "{settings} öffnen"},
           {"Rome", "Rom"},
           {"{count, plural, one {# day} other {# days}} in {place}, it's {share, number, percent}",
            "{count, plural, one {# Tag} other {# Tage}} in {place}, {share, number, percent}"}})));
  german.add("en", *CompiledCatalog::from(compiled({{"Option", "Alt"}, {"Rome", "rome"}})));
  EXPECT_EQ(german.text(days(1)), "1 Tag in Rom, 50\u00a0%");
  EXPECT_EQ(german.text(days(2000)), "2.000 Tage in Rom, 50\u00a0%");
  EXPECT_EQ(german.text(removed), "Remove Rome {count}");
  EXPECT_EQ(german.text(asItStands("Rome")), "Rome");
  EXPECT_EQ(german.text(words("Option")), "Alt");  // the next best language
  EXPECT_EQ(asked, 0);
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(german.text(words("Open System Settings")), "Einstellungen öffnen");
  EXPECT_EQ(asked, 1);

  const Words language = languageNamed("Portuguese (Brazil)", "pt-BR");
  EXPECT_EQ(language, "Portuguese (Brazil)");
  EXPECT_EQ(german.text(language), "Portugiesisch (Brasilien)");
  EXPECT_NE(words("Rome"), asItStands("Rome"));
}

TEST(WordsTest, RefuseACatalogThatIsDamaged) {
  const Bytes whole = compiled({{"a", "1"}, {"b", "2"}, {"c", "3"}});
  EXPECT_THAT(CompiledCatalog::from(whole)->literals(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(CompiledCatalog::from(whole)->find("d"), std::nullopt);
  for (std::size_t size = 0; size + 1 < whole.size(); ++size)
    EXPECT_FALSE(CompiledCatalog::from(whole.substr(0, size))) << size;
  for (std::size_t at = 8; at < 20; ++at) {
    Bytes wild = whole;
    wild[at] = '\xff';
    if (const auto read = CompiledCatalog::from(wild)) read->find("b");  // inside its bytes
  }
}

}  // namespace
}  // namespace quillo
