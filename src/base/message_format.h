// Messages by ICU's rules (MessageFormat): "{count, plural, one {# word} other {# words}}".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillo {

struct MessageArgument {
  std::string_view name;
  std::variant<std::string, std::int64_t, double> value;
};

// A text without a brace is shown as it stands, quickly; so are texts put in their places. Numbers
// and plurals load ICU's rules for `locale` ("pt-BR"), which takes some 2 MB the first time.
// What is no message, or lacks an argument, is shown as far as it can be.
std::string formatMessage(std::string_view message, const std::string& locale,
                          const std::vector<MessageArgument>& arguments);

}  // namespace quillo
