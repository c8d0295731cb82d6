// The texts of the program in the user's language.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/message_format.h"
#include "base/words.h"

namespace quillo {

// Translations as gettext compiles them (.mo): a table sorted by the English literal, which is
// searched where it lies. A translation may be a message where its literal is none.
class CompiledCatalog {
 public:
  // Nothing for bytes that are no such table.
  static std::optional<CompiledCatalog> from(Bytes bytes);

  std::optional<std::string_view> find(std::string_view literal) const;
  // Every literal that it has, sorted.
  std::vector<std::string_view> literals() const;

 private:
  explicit CompiledCatalog(Bytes bytes) : bytes_(std::move(bytes)) {}
  bool isSound() const;
  std::uint32_t number(std::size_t at) const;
  std::string_view text(std::uint32_t table, std::uint32_t index) const;
  std::string_view literal(std::uint32_t index) const;

  Bytes bytes_;
  std::uint32_t count_ = 0;
  std::uint32_t literals_ = 0;      // where the table of literals begins
  std::uint32_t translations_ = 0;  // where that of their translations does
};

// Made by the root and handed to what shows texts; an empty one leaves them English. Main thread.
class Catalog {
 public:
  // Asked after those that were added before. `locale` is a language tag, as "pt-BR", by whose
  // rules numbers and plurals go.
  void add(std::string locale, CompiledCatalog translations);

  // What every translation may put in the place of {name}, as the desktop's own name for one of its
  // programs. Asked when it is first needed.
  void define(std::string name, std::function<std::string()> term);

  std::string text(const Words& words) const;

 private:
  struct Translations {
    std::string locale;
    CompiledCatalog compiled;
  };
  struct Found {
    std::string_view message;
    std::string_view locale;
  };
  struct Term {
    std::string name;
    std::function<std::string()> find;
    mutable std::optional<std::string> found;
  };

  Found find(std::string_view literal) const;
  std::vector<MessageArgument> arguments(const Words& words, std::string_view message) const;
  std::string languageName(const Words& words) const;

  std::vector<Translations> translations_;
  std::vector<Term> terms_;
};

}  // namespace quillo
