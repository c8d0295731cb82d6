#include "base/words.h"

#include <utility>

#include "base/catalog.h"

namespace quillo {

Words::Words(Kind kind, std::string text, std::string languageTag)
    : kind_(kind), text_(std::move(text)), languageTag_(std::move(languageTag)) {}

std::string Words::english() const {
  return arguments_ ? Catalog().text(*this) : text_;
}

bool operator==(const Words& a, const Words& b) {
  const auto sameArguments = [&] {
    return a.arguments_ && b.arguments_ ? *a.arguments_ == *b.arguments_
                                        : a.arguments_ == b.arguments_;
  };
  return a.kind_ == b.kind_ && a.text_ == b.text_ && a.languageTag_ == b.languageTag_ &&
         sameArguments();
}

Words words(Message message, std::vector<Argument> arguments) {
  Words made(message.literal);
  made.arguments_ = std::make_shared<const Words::Arguments>(std::move(arguments));
  return made;
}

Words asItStands(std::string text) {
  return {Words::Kind::text, std::move(text)};
}

Words languageNamed(std::string english, std::string tag) {
  return {Words::Kind::language, std::move(english), std::move(tag)};
}

std::vector<std::string> english(std::span<const Words> texts) {
  std::vector<std::string> english;
  for (const Words& each : texts) english.push_back(each.english());
  return english;
}

}  // namespace quillo
