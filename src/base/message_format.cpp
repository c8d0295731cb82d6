#include "base/message_format.h"

#include <unicode/locid.h>
#include <unicode/msgfmt.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <optional>

#include "base/text.h"

namespace quillo {
namespace {

icu::UnicodeString toIcu(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

icu::Formattable toFormattable(const MessageArgument& argument) {
  if (const auto* const text = std::get_if<std::string>(&argument.value))
    return icu::Formattable(toIcu(*text));
  if (const auto* const count = std::get_if<std::int64_t>(&argument.value))
    return icu::Formattable(*count);
  return icu::Formattable(std::get<double>(argument.value));
}

// A message of nothing but texts and places for texts, filled in; nothing for any other.
std::optional<std::string> withTextsInPlace(std::string_view message,
                                            const std::vector<MessageArgument>& arguments) {
  if (message.find('\'') != std::string_view::npos) return std::nullopt;  // it may quote a brace
  std::string filled;
  for (std::size_t at = 0;;) {
    const std::size_t open = message.find('{', at);
    filled += message.substr(at, open - at);
    if (open == std::string_view::npos) return filled;
    const std::size_t close = message.find('}', open);
    if (close == std::string_view::npos) return std::nullopt;
    const auto argument = std::ranges::find(arguments, message.substr(open + 1, close - open - 1),
                                            &MessageArgument::name);
    if (argument == arguments.end()) return std::nullopt;
    const auto* const text = std::get_if<std::string>(&argument->value);
    if (!text) return std::nullopt;
    filled += *text;
    at = close + 1;
  }
}

std::string formatByIcu(std::string_view message, const std::string& locale,
                        const std::vector<MessageArgument>& arguments) {
  std::vector<icu::UnicodeString> names;
  std::vector<icu::Formattable> values;
  for (const MessageArgument& argument : arguments) {
    names.push_back(toIcu(argument.name));
    values.push_back(toFormattable(argument));
  }
  UErrorCode status = U_ZERO_ERROR;
  const icu::MessageFormat format(toIcu(message), icu::Locale::forLanguageTag(locale, status),
                                  status);
  icu::UnicodeString formatted;
  format.format(names.data(), values.data(), static_cast<std::int32_t>(names.size()), formatted,
                status);
  if (U_FAILURE(status)) return std::string(message);
  std::string text;
  formatted.toUTF8String(text);
  return text;
}

}  // namespace

std::string formatMessage(std::string_view message, const std::string& locale,
                          const std::vector<MessageArgument>& arguments) {
  if (message.find('{') == std::string_view::npos) return std::string(message);
  if (auto filled = withTextsInPlace(message, arguments)) return *std::move(filled);
  return formatByIcu(message, locale, arguments);
}

}  // namespace quillo
