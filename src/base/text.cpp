#include "base/text.h"

#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/locdspnm.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/regex.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>
#include <unicode/uchar.h>
#include <unicode/uldnames.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <charconv>

namespace quillo {
namespace {

icu::UnicodeString toIcu(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

std::string fromIcu(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

bool isAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

// Every byte is a character of its own but for CR LF.
bool isPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return isAscii(c) && c != '\r'; });
}

// Whether a scalar is a character by itself, unless one follows that joins it.
bool standsAlone(UChar32 c) {
  switch (u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_OTHER:
    case U_GCB_CONTROL:
    case U_GCB_LF:
      return true;
    default:
      return false;
  }
}

// Walks the boundaries between characters as byte offsets, in one direction.
class CharacterBoundaries {
 public:
  explicit CharacterBoundaries(std::string_view text) : text_(text) {
    UErrorCode status = U_ZERO_ERROR;
    utext_openUTF8(&utext_, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator().setText(&utext_, status);
    iterator().first();
  }
  CharacterBoundaries(const CharacterBoundaries&) = delete;
  CharacterBoundaries& operator=(const CharacterBoundaries&) = delete;
  ~CharacterBoundaries() { utext_close(&utext_); }

  // The next boundary, or nothing behind the last one.
  std::optional<std::size_t> next() {
    if (at_ == text_.size()) return std::nullopt;
    const auto next = endOfPlainCharacter();
    at_ = next ? *next : static_cast<std::size_t>(iterator().following(position(at_)));
    return at_;
  }
  std::optional<std::size_t> previous() { return offset(iterator().previous()); }
  void toEnd() { iterator().last(); }

 private:
  static icu::BreakIterator& iterator() {
    // Loading the rules is slow, so each thread keeps one.
    thread_local const std::unique_ptr<icu::BreakIterator> kept = [] {
      UErrorCode status = U_ZERO_ERROR;
      return std::unique_ptr<icu::BreakIterator>(
          icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    }();
    return *kept;
  }
  static std::int32_t position(std::size_t offset) { return static_cast<std::int32_t>(offset); }
  static std::optional<std::size_t> offset(std::int32_t position) {
    if (position == icu::BreakIterator::DONE) return std::nullopt;
    return static_cast<std::size_t>(position);
  }
  // Two scalars that stand alone are two characters: most text needs no rules.
  std::optional<std::size_t> endOfPlainCharacter() const {
    const bool isLast = at_ + 1 == text_.size();
    if (isPlainAscii(text_.substr(at_, 1)) && (isLast || isAscii(text_[at_ + 1]))) return at_ + 1;
    const std::int32_t size = position(text_.size());
    std::int32_t end = position(at_);
    UChar32 first = 0;
    U8_NEXT(text_.data(), end, size, first);
    if (first < 0 || !standsAlone(first)) return std::nullopt;
    if (end == size) return text_.size();
    std::int32_t behind = end;
    UChar32 second = 0;
    U8_NEXT(text_.data(), behind, size, second);
    if (second < 0 || !standsAlone(second)) return std::nullopt;
    return static_cast<std::size_t>(end);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  UText utext_ = UTEXT_INITIALIZER;
};

// The byte offset behind the first `count` characters.
std::size_t offsetOfCharacter(std::string_view text, std::size_t count) {
  if (isPlainAscii(text)) return std::min(count, text.size());
  CharacterBoundaries boundaries(text);
  std::size_t offset = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto next = boundaries.next();
    if (!next) return text.size();
    offset = *next;
  }
  return offset;
}

// The byte offset before the last `count` characters.
std::size_t offsetOfCharacterFromEnd(std::string_view text, std::size_t count) {
  if (isPlainAscii(text)) return text.size() - std::min(count, text.size());
  CharacterBoundaries boundaries(text);
  boundaries.toEnd();
  std::size_t offset = text.size();
  for (std::size_t i = 0; i < count; ++i) {
    const auto previous = boundaries.previous();
    if (!previous) return 0;
    offset = *previous;
  }
  return offset;
}

char32_t firstScalar(std::string_view text) {
  if (text.empty()) return 0;
  if (isAscii(text.front())) return static_cast<char32_t>(text.front());
  std::int32_t position = 0;
  UChar32 scalar = 0;
  U8_NEXT_OR_FFFD(text.data(), position, static_cast<std::int32_t>(text.size()), scalar);
  return static_cast<char32_t>(scalar);
}

bool isWhitespaceScalar(UChar32 c) {
  return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR;
}
bool isNewlineScalar(UChar32 c) {
  return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isInSet(UChar32 c, TrimSet set) {
  switch (set) {
    case TrimSet::whitespace:
      return isWhitespaceScalar(c);
    case TrimSet::newlines:
      return isNewlineScalar(c);
    case TrimSet::whitespaceAndNewlines:
      return isWhitespaceScalar(c) || isNewlineScalar(c);
  }
  return false;
}

template <class Predicate>
std::string trimmedWhere(std::string_view text, Predicate inSet) {
  const auto size = static_cast<std::int32_t>(text.size());
  std::int32_t begin = 0;
  while (begin < size) {
    std::int32_t next = begin;
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(text.data(), next, size, c);
    if (!inSet(c)) break;
    begin = next;
  }
  std::int32_t end = size;
  while (end > begin) {
    std::int32_t previous = end;
    UChar32 c = 0;
    U8_PREV_OR_FFFD(text.data(), 0, previous, c);
    if (!inSet(c)) break;
    end = previous;
  }
  return std::string(text.substr(begin, end - begin));
}

icu::UnicodeString decomposed(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFDInstance(status)->normalize(toIcu(text), status);
}

bool containsAtStrength(std::string_view text, std::string_view needle,
                        icu::Collator::ECollationStrength strength) {
  if (needle.empty()) return true;
  if (text.empty()) return false;
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(
      icu::Collator::createInstance(icu::Locale::getRoot(), status));
  collator->setStrength(strength);
  auto* rules = dynamic_cast<icu::RuleBasedCollator*>(collator.get());
  icu::StringSearch search(toIcu(needle), toIcu(text), rules, nullptr, status);
  return search.first(status) != USEARCH_DONE && U_SUCCESS(status);
}

// ICU answers with the code itself when it knows no name.
std::optional<std::string> knownName(const icu::UnicodeString& name, std::string_view code) {
  if (name.isEmpty() || fromIcu(name) == code) return std::nullopt;
  return fromIcu(name);
}

}  // namespace

std::size_t characterCount(std::string_view text) {
  if (isPlainAscii(text)) return text.size();
  CharacterBoundaries boundaries(text);
  std::size_t count = 0;
  while (boundaries.next()) ++count;
  return count;
}

std::vector<std::string> characters(std::string_view text) {
  std::vector<std::string> all;
  forEachCharacter(text, [&all](std::string_view character) { all.emplace_back(character); });
  return all;
}

void forEachCharacter(std::string_view text, const std::function<void(std::string_view)>& visit) {
  if (isPlainAscii(text)) {
    for (std::size_t i = 0; i < text.size(); ++i) visit(text.substr(i, 1));
    return;
  }
  CharacterBoundaries boundaries(text);
  std::size_t begin = 0;
  while (const auto end = boundaries.next()) {
    visit(text.substr(begin, *end - begin));
    begin = *end;
  }
}

std::string prefixCharacters(std::string_view text, std::size_t count) {
  return std::string(text.substr(0, offsetOfCharacter(text, count)));
}
std::string suffixCharacters(std::string_view text, std::size_t count) {
  return std::string(text.substr(offsetOfCharacterFromEnd(text, count)));
}
std::string dropFirstCharacters(std::string_view text, std::size_t count) {
  return std::string(text.substr(offsetOfCharacter(text, count)));
}
std::string dropLastCharacters(std::string_view text, std::size_t count) {
  return std::string(text.substr(0, offsetOfCharacterFromEnd(text, count)));
}

bool isLetter(std::string_view character) {
  return u_hasBinaryProperty(static_cast<UChar32>(firstScalar(character)), UCHAR_ALPHABETIC);
}
bool isNumber(std::string_view character) {
  return u_getIntPropertyValue(static_cast<UChar32>(firstScalar(character)), UCHAR_NUMERIC_TYPE) !=
         U_NT_NONE;
}
bool isUppercase(std::string_view character) {
  return u_hasBinaryProperty(static_cast<UChar32>(firstScalar(character)), UCHAR_UPPERCASE);
}

std::vector<char32_t> scalars(std::string_view text) {
  std::vector<char32_t> all;
  const auto size = static_cast<std::int32_t>(text.size());
  for (std::int32_t i = 0; i < size;) {
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(text.data(), i, size, c);
    all.push_back(static_cast<char32_t>(c));
  }
  return all;
}

std::string trimmed(std::string_view text, TrimSet set) {
  return trimmedWhere(text, [set](UChar32 c) { return isInSet(c, set); });
}

std::string trimmedOf(std::string_view text, std::string_view set) {
  const std::vector<char32_t> members = scalars(set);
  return trimmedWhere(text, [&members](UChar32 c) {
    return std::find(members.begin(), members.end(), static_cast<char32_t>(c)) != members.end();
  });
}

bool isBlank(std::string_view text) {
  return trimmed(text).empty();
}

std::string lowercased(std::string_view text) {
  return fromIcu(toIcu(text).toLower(icu::Locale::getRoot()));
}
std::string uppercased(std::string_view text) {
  return fromIcu(toIcu(text).toUpper(icu::Locale::getRoot()));
}
std::string capitalized(std::string_view text) {
  return fromIcu(toIcu(text).toTitle(nullptr, icu::Locale::getRoot()));
}

CaseFolded caseFolded(std::string_view text) {
  CaseFolded folded;
  folded.text.reserve(text.size());
  folded.origins.reserve(text.size());
  const auto append = [&folded](std::string_view bytes, std::int32_t origin) {
    folded.text += bytes;
    folded.origins.insert(folded.origins.end(), bytes.size(), static_cast<std::uint32_t>(origin));
  };
  const auto size = static_cast<std::int32_t>(text.size());
  for (std::int32_t i = 0; i < size;) {
    const std::int32_t origin = i;
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(text.data(), i, size, c);
    if (c < 0x80) {
      const char lower = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
      append({&lower, 1}, origin);
    } else {
      icu::UnicodeString scalar(c);
      if (u_hasBinaryProperty(c, UCHAR_CHANGES_WHEN_CASEFOLDED)) scalar.foldCase();
      append(fromIcu(scalar), origin);
    }
  }
  return folded;
}

std::string foldedIgnoringCaseAndDiacritics(std::string_view text) {
  if (isPlainAscii(text)) return caseFolded(text).text;
  icu::UnicodeString folded;
  const icu::UnicodeString decomposed = toIcu(canonicalForm(text));
  for (std::int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
    const UChar32 c = decomposed.char32At(i);
    if (u_charType(c) != U_NON_SPACING_MARK) folded.append(c);
  }
  return fromIcu(folded.foldCase());
}

std::string canonicalForm(std::string_view text) {
  return isPlainAscii(text) ? std::string(text) : fromIcu(decomposed(text));
}

bool textEquals(std::string_view a, std::string_view b) {
  return a == b || decomposed(a) == decomposed(b);
}

bool textHasPrefix(std::string_view text, std::string_view prefix) {
  if (prefix.empty()) return true;
  // Whole characters match: "e" does not begin a text that begins with "é".
  return textEquals(prefixCharacters(text, characterCount(prefix)), prefix);
}
bool textHasSuffix(std::string_view text, std::string_view suffix) {
  if (suffix.empty()) return true;
  return textEquals(suffixCharacters(text, characterCount(suffix)), suffix);
}

bool containsIgnoringCaseAndDiacritics(std::string_view text, std::string_view needle) {
  return containsAtStrength(text, needle, icu::Collator::PRIMARY);
}
bool containsIgnoringCase(std::string_view text, std::string_view needle) {
  return containsAtStrength(text, needle, icu::Collator::SECONDARY);
}

struct Regex::Compiled {
  std::unique_ptr<icu::RegexPattern> pattern;
};

Regex::Regex(std::unique_ptr<Compiled> compiled) : compiled_(std::move(compiled)) {}
Regex::Regex(Regex&&) noexcept = default;
Regex& Regex::operator=(Regex&&) noexcept = default;
Regex::~Regex() = default;

std::optional<Regex> Regex::compile(std::string_view pattern, Case sensitivity) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError place;
  const std::uint32_t flags = sensitivity == Case::insensitive ? UREGEX_CASE_INSENSITIVE : 0u;
  std::unique_ptr<icu::RegexPattern> compiled(
      icu::RegexPattern::compile(toIcu(pattern), flags, place, status));
  if (U_FAILURE(status)) return std::nullopt;
  return Regex(std::make_unique<Compiled>(Compiled{std::move(compiled)}));
}

std::string Regex::escaped(std::string_view literal) {
  constexpr std::string_view metacharacters = R"(*?+[(){}^$|\./])";
  std::string out;
  for (const char c : literal) {
    if (metacharacters.find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

// A matcher over UTF-8 bytes, which must stay while it lives.
class Regex::Matcher {
 public:
  Matcher(const icu::RegexPattern& pattern, std::string_view text) {
    utext_openUTF8(&utext_, text.data(), static_cast<std::int64_t>(text.size()), &status_);
    matcher_.reset(pattern.matcher(status_));
    matcher_->reset(&utext_);
  }
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;
  ~Matcher() { utext_close(&utext_); }

  bool find() { return matcher_->find(status_) && U_SUCCESS(status_); }
  bool lookingAt(std::size_t start) {
    return matcher_->lookingAt(static_cast<std::int64_t>(start), status_) && U_SUCCESS(status_);
  }
  Range range() {
    return {static_cast<std::size_t>(matcher_->start64(status_)),
            static_cast<std::size_t>(matcher_->end64(status_))};
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  UText utext_ = UTEXT_INITIALIZER;
  std::unique_ptr<icu::RegexMatcher> matcher_;
};

std::vector<Regex::Range> Regex::matches(std::string_view text) const {
  Matcher matcher(*compiled_->pattern, text);
  std::vector<Range> ranges;
  while (matcher.find()) ranges.push_back(matcher.range());
  return ranges;
}

std::vector<Regex::Range> Regex::matchesAt(std::string_view text,
                                           std::span<const std::size_t> starts) const {
  std::vector<Range> ranges;
  if (starts.empty()) return ranges;
  Matcher matcher(*compiled_->pattern, text);
  std::size_t free = 0;
  for (const std::size_t start : starts) {
    if (start < free || !matcher.lookingAt(start)) continue;
    ranges.push_back(matcher.range());
    free = ranges.back().end;
  }
  return ranges;
}

std::optional<std::string> englishLanguageName(std::string_view languageCode) {
  icu::UnicodeString name;
  icu::Locale(std::string(languageCode).c_str())
      .getDisplayLanguage(icu::Locale::getEnglish(), name);
  return knownName(name, languageCode);
}

std::optional<std::string> englishIdentifierName(std::string_view identifier) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale = icu::Locale::forLanguageTag(
      icu::StringPiece(identifier.data(), static_cast<std::int32_t>(identifier.size())), status);
  if (U_FAILURE(status) || locale.isBogus()) return std::nullopt;
  icu::UnicodeString language;
  locale.getDisplayLanguage(icu::Locale::getEnglish(), language);
  if (!knownName(language, locale.getLanguage())) return std::nullopt;
  icu::UnicodeString name;
  locale.getDisplayName(icu::Locale::getEnglish(), name);
  return knownName(name, identifier);
}

std::optional<std::string> identifierNameIn(std::string_view locale, std::string_view identifier) {
  UDisplayContext form[] = {UDISPCTX_CAPITALIZATION_FOR_UI_LIST_OR_MENU};
  const std::unique_ptr<icu::LocaleDisplayNames> names(
      icu::LocaleDisplayNames::createInstance(icu::Locale(std::string(locale).c_str()), form, 1));
  icu::UnicodeString name;
  names->localeDisplayName(std::string(identifier).c_str(), name);
  return knownName(name, identifier);
}

bool isValidUtf8(std::string_view bytes) {
  const auto size = static_cast<std::int32_t>(bytes.size());
  for (std::int32_t i = 0; i < size;) {
    UChar32 c = 0;
    U8_NEXT(bytes.data(), i, size, c);
    if (c < 0) return false;
  }
  return true;
}

std::u16string toUtf16(std::string_view text) {
  const icu::UnicodeString units = toIcu(text);
  return std::u16string(units.getBuffer(), static_cast<std::size_t>(units.length()));
}

std::string fromUtf16(std::u16string_view text) {
  return fromIcu(icu::UnicodeString(text.data(), static_cast<std::int32_t>(text.size())));
}

std::string shortestText(double value) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  std::string out(buffer.data(), end);
  if (out.find_first_of(".eni") == std::string::npos) out += ".0";
  return out;
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = text.find(separator, begin);
    if (end == std::string_view::npos) break;
    parts.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  parts.emplace_back(text.substr(begin));
  return parts;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string out;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) out += separator;
    out += part;
  }
  return out;
}

}  // namespace quillo
