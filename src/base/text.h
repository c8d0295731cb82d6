// Text by the rules of Unicode, on ICU. Texts are UTF-8; ill-formed bytes read as U+FFFD.
//
// A *character* is a user-perceived one: an extended grapheme cluster (UAX #29). Two texts are
// equal, and one begins with another, by canonical equivalence (UAX #15).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

// --- Characters ---
std::size_t characterCount(std::string_view text);
std::vector<std::string> characters(std::string_view text);
// Calls `visit` with each character in order, without copying it. `visit` counts and cuts no
// characters itself.
void forEachCharacter(std::string_view text, const std::function<void(std::string_view)>& visit);
// At most `count` characters from the start, from the end, or all but those at one end.
std::string prefixCharacters(std::string_view text, std::size_t count);
std::string suffixCharacters(std::string_view text, std::size_t count);
std::string dropFirstCharacters(std::string_view text, std::size_t count);
std::string dropLastCharacters(std::string_view text, std::size_t count);
// By the first scalar of `character`: alphabetic; of any numeric type (½ and 三 too).
bool isLetter(std::string_view character);
bool isNumber(std::string_view character);
bool isUppercase(std::string_view character);

// The scalars of the text, and their count.
std::vector<char32_t> scalars(std::string_view text);

// --- Trimming ---
enum class TrimSet {
  whitespace,             // category Zs and TAB
  newlines,               // U+000A...U+000D, U+0085, U+2028, U+2029
  whitespaceAndNewlines,  // both
};
std::string trimmed(std::string_view text, TrimSet set = TrimSet::whitespaceAndNewlines);
// Trims the scalars of `set` from both ends.
std::string trimmedOf(std::string_view text, std::string_view set);
bool isBlank(std::string_view text);

// --- Case, without a locale ---
std::string lowercased(std::string_view text);
std::string uppercased(std::string_view text);
// Each word with an upper-case first letter and lower-case rest.
std::string capitalized(std::string_view text);

// The text in full case folding, so that texts that differ in case alone become the same bytes.
struct CaseFolded {
  std::string text;
  // For each byte of `text`, where the scalar that it stands for begins in the original.
  std::vector<std::uint32_t> origins;
};
CaseFolded caseFolded(std::string_view text);
// In full case folding and without its combining marks: "Émail" gives "email". Texts that differ in
// case and diacritics alone become the same bytes.
std::string foldedIgnoringCaseAndDiacritics(std::string_view text);

// --- Comparison by canonical equivalence ---
// The same bytes for all texts that are equal (NFD).
std::string canonicalForm(std::string_view text);
bool textEquals(std::string_view a, std::string_view b);
bool textHasPrefix(std::string_view text, std::string_view prefix);
bool textHasSuffix(std::string_view text, std::string_view suffix);
// Somewhere in `text`, at primary strength: "é" finds "E".
bool containsIgnoringCaseAndDiacritics(std::string_view text, std::string_view needle);
// Somewhere in `text`, ignoring case alone: "é" finds "É" but not "E".
bool containsIgnoringCase(std::string_view text, std::string_view needle);

// --- Regular expressions (ICU's: \b and \w are Unicode) ---
class Regex {
 public:
  enum class Case { sensitive, insensitive };
  // Bytes of the searched text; always on scalar boundaries.
  struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  // Nothing when the pattern does not compile.
  static std::optional<Regex> compile(std::string_view pattern, Case sensitivity);
  static std::string escaped(std::string_view literal);

  Regex(Regex&&) noexcept;
  Regex& operator=(Regex&&) noexcept;
  ~Regex();

  // Every match from the start, without overlap.
  std::vector<Range> matches(std::string_view text) const;
  // The same, where every match is known to begin at one of `starts`, in rising order.
  std::vector<Range> matchesAt(std::string_view text, std::span<const std::size_t> starts) const;

 private:
  struct Compiled;
  class Matcher;
  explicit Regex(std::unique_ptr<Compiled> compiled);
  std::unique_ptr<Compiled> compiled_;
};

// --- Languages (CLDR) ---
// "de" gives "German"; nothing for a code that has no name.
std::optional<std::string> englishLanguageName(std::string_view languageCode);
// "pt-BR" gives "Portuguese (Brazil)"; nothing for an identifier that has no name.
std::optional<std::string> englishIdentifierName(std::string_view identifier);
// As an entry of a list in the language of `locale`: "pt-BR" in "de" gives "Portugiesisch
// (Brasilien)".
std::optional<std::string> identifierNameIn(std::string_view locale, std::string_view identifier);

// --- UTF-8 and UTF-16 ---
bool isValidUtf8(std::string_view bytes);
std::u16string toUtf16(std::string_view text);
std::string fromUtf16(std::u16string_view text);

// --- Numbers ---
// The shortest decimal form that reads back to the same value, with a fraction or an exponent:
// 0.125, 1.0, 5e-05.
std::string shortestText(double value);

// The parts between the separators; an empty text gives one empty part.
std::vector<std::string> split(std::string_view text, char separator);
std::string joined(const std::vector<std::string>& parts, std::string_view separator);

}  // namespace quillo
