#include "base/catalog.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "base/text.h"

namespace quillo {
namespace {

constexpr std::string_view englishLocale = "en";

// The file's head (GNU gettext manual, "The Format of GNU MO Files"), in words of four bytes.
constexpr std::uint32_t magic = 0x950412de;
constexpr std::size_t countAt = 8;
constexpr std::size_t literalsAt = 12;
constexpr std::size_t translationsAt = 16;
constexpr std::size_t headSize = 28;
constexpr std::size_t rowSize = 8;  // the length of a text, and where it begins

template <class... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};

}  // namespace

// --- A compiled catalog ---

std::optional<CompiledCatalog> CompiledCatalog::from(Bytes bytes) {
  CompiledCatalog catalog(std::move(bytes));
  if (catalog.bytes_.size() < headSize || catalog.number(0) != magic) return std::nullopt;
  catalog.count_ = catalog.number(countAt);
  catalog.literals_ = catalog.number(literalsAt);
  catalog.translations_ = catalog.number(translationsAt);
  return catalog.isSound() ? std::optional(std::move(catalog)) : std::nullopt;
}

// Whether every row lies in the file, and so does what it tells of.
bool CompiledCatalog::isSound() const {
  const auto liesInside = [this](std::uint64_t from, std::uint64_t length) {
    return from + length <= bytes_.size();
  };
  for (const std::uint32_t table : {literals_, translations_}) {
    if (!liesInside(table, count_ * rowSize)) return false;
    for (std::uint32_t row = 0; row < count_; ++row) {
      const std::size_t at = table + row * rowSize;
      if (!liesInside(number(at + 4), number(at))) return false;
    }
  }
  return true;
}

std::uint32_t CompiledCatalog::number(std::size_t at) const {
  static_assert(std::endian::native == std::endian::little, "msgfmt writes little-endian files");
  std::uint32_t value = 0;
  std::memcpy(&value, bytes_.data() + at, sizeof value);
  return value;
}

std::string_view CompiledCatalog::text(std::uint32_t table, std::uint32_t index) const {
  const std::size_t row = table + index * rowSize;
  return std::string_view(bytes_).substr(number(row + 4), number(row));
}

std::string_view CompiledCatalog::literal(std::uint32_t index) const {
  return text(literals_, index);
}

std::optional<std::string_view> CompiledCatalog::find(std::string_view literal) const {
  std::uint32_t first = 0;
  std::uint32_t last = count_;
  while (first < last) {
    const std::uint32_t middle = first + (last - first) / 2;
    const std::string_view here = this->literal(middle);
    if (here == literal) return text(translations_, middle);
    (here < literal ? first : last) = here < literal ? middle + 1 : middle;
  }
  return std::nullopt;
}

std::vector<std::string_view> CompiledCatalog::literals() const {
  std::vector<std::string_view> literals;
  // The empty one holds the catalog's own head.
  for (std::uint32_t i = 0; i < count_; ++i)
    if (!literal(i).empty()) literals.push_back(literal(i));
  return literals;
}

// --- Catalogs ---

void Catalog::add(std::string locale, CompiledCatalog translations) {
  translations_.push_back({std::move(locale), std::move(translations)});
}

void Catalog::define(std::string name, std::function<std::string()> term) {
  terms_.push_back({std::move(name), std::move(term), std::nullopt});
}

std::string Catalog::text(const Words& words) const {
  switch (words.kind_) {
    case Words::Kind::text:
      return words.text_;
    case Words::Kind::language:
      return languageName(words);
    case Words::Kind::literal:
      break;
  }
  const Found found = find(words.text_);
  return formatMessage(found.message, std::string(found.locale), arguments(words, found.message));
}

Catalog::Found Catalog::find(std::string_view literal) const {
  for (const auto& [locale, compiled] : translations_)
    if (const auto translation = compiled.find(literal)) return {*translation, locale};
  return {literal, englishLocale};
}

std::vector<MessageArgument> Catalog::arguments(const Words& words,
                                                std::string_view message) const {
  std::vector<MessageArgument> arguments;
  if (words.arguments_)
    for (const Argument& argument : *words.arguments_)
      arguments.push_back(
          {argument.name,
           std::visit(Match{[this](const Words& part) -> decltype(MessageArgument::value) {
                              return text(part);
                            },
                            [](auto number) -> decltype(MessageArgument::value) { return number; }},
                      argument.value)});
  for (const Term& term : terms_) {
    if (message.find('{' + term.name + '}') == std::string_view::npos) continue;
    if (!term.found) term.found = term.find();
    arguments.push_back({term.name, *term.found});
  }
  return arguments;
}

std::string Catalog::languageName(const Words& words) const {
  const std::string_view locale =
      translations_.empty() ? englishLocale : std::string_view(translations_.front().locale);
  if (locale.starts_with(englishLocale)) return words.text_;
  return identifierNameIn(locale, words.languageTag_).value_or(words.text_);
}

}  // namespace quillo
