// Whether a translation, translated back, still says what the user said.
#pragma once

#include <string_view>

#include "base/words.h"

namespace quillo {

enum class ReviewVerdict { matches, mayDiffer };

constexpr Literal verdictText(ReviewVerdict verdict) {
  return verdict == ReviewVerdict::matches ? words("matches") : words("may differ");
}

// By the words that both have, of all the words of the longer one. A word that is repeated counts
// once among the common ones and each time among all.
ReviewVerdict reviewVerdict(std::string_view youSaid, std::string_view means);

}  // namespace quillo
