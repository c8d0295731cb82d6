// Rules that the text service's output passes before it may replace what the user said. Pure
// functions; all counts are of user-perceived characters.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "base/words.h"

namespace quillo {

struct Rejected {
  Literal reason;
};
// Used, with a line in the log. No rule yields it yet.
struct Suspicious {
  Literal reason;
};
struct Accepted {};

using ValidationVerdict = std::variant<Rejected, Suspicious, Accepted>;

// Without the preambles and quotation marks that language models put around an answer.
std::string cleanOutput(std::string_view text);

// Whether `transformed` can be what became of `original`: it says something, is no refusal, has a
// credible length and is made of words.
ValidationVerdict validateOutput(std::string_view original, std::string_view transformed);

}  // namespace quillo
