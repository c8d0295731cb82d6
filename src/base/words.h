// What a user reads: an English text of the program with what is put into it, on its way to be
// shown in the user's language. It is looked up where it is shown (base/catalog.h), so that rooms,
// logs and tests see the English text and nobody carries a language around.
//
//   words("Listening")
//   words("{count, plural, one {# word} other {# words}} in {name}",
//         {{"count", 3}, {"name", asItStands(document)}})
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillo {

// An English text by which catalogs know it. scripts/words finds the texts by looking for words(),
// which takes string literals alone.
class Literal {
 public:
  constexpr Literal() = default;

  constexpr std::string_view english() const { return text_; }
  friend constexpr bool operator==(const Literal&, const Literal&) = default;

 private:
  explicit consteval Literal(const char* text) : text_(text) {}
  friend consteval Literal words(const char* text);

  std::string_view text_;
};

consteval Literal words(const char* text) {
  return Literal(text);
}

// What words() with arguments takes: a literal, or one that was made before.
struct Message {
  consteval Message(const char* text) : literal(words(text)) {}
  constexpr Message(Literal literal) : literal(literal) {}

  Literal literal;
};

struct Argument;

// A value. Shows nothing when it is empty.
class Words {
 public:
  Words() = default;
  Words(Literal literal) : kind_(Kind::literal), text_(literal.english()) {}

  bool empty() const { return text_.empty(); }
  // As the program's own texts say it, with its arguments: for logs, and for rules that go by the
  // words of a text.
  std::string english() const;

  // Whether the same is shown in every language.
  friend bool operator==(const Words& a, const Words& b);
  friend bool operator==(const Words& words, std::string_view text) {
    return words.english() == text;
  }

 private:
  enum class Kind { text, literal, language };
  using Arguments = std::vector<Argument>;

  Words(Kind kind, std::string text, std::string languageTag = {});

  friend Words words(Message message, Arguments arguments);
  friend Words asItStands(std::string text);
  friend Words languageNamed(std::string english, std::string tag);
  friend class Catalog;

  Kind kind_ = Kind::text;
  std::string text_;         // a literal, or the English text
  std::string languageTag_;  // of a language
  std::shared_ptr<const Arguments> arguments_;
};

// What takes the place of {name}. A number is written, and chooses a plural, by the rules of the
// user's language.
struct Argument {
  Argument(std::string_view name, Words words) : name(name), value(std::move(words)) {}
  Argument(std::string_view name, Literal literal) : Argument(name, Words(literal)) {}
  Argument(std::string_view name, std::integral auto number)
      : name(name), value(static_cast<std::int64_t>(number)) {}
  Argument(std::string_view name, std::floating_point auto number)
      : name(name), value(static_cast<double>(number)) {}

  friend bool operator==(const Argument&, const Argument&) = default;

  std::string_view name;  // outlives everything
  std::variant<Words, std::int64_t, double> value;
};

// A message by ICU's rules: every text with a brace is one.
Words words(Message message, std::vector<Argument> arguments);

// What is not the program's to say in another language: what the user, the service or the system
// wrote.
Words asItStands(std::string text);

// A language by its name: `tag` is "pt-BR", and `english` what that is called in English.
Words languageNamed(std::string english, std::string tag);

// Each in English.
std::vector<std::string> english(std::span<const Words> texts);

}  // namespace quillo
