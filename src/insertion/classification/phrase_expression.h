// Finds any of many phrases as a whole token.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace quillo {

// Ignores case. A phrase matches where neither side of it touches a word character, a dot or a
// hyphen.
class PhraseExpression {
 public:
  explicit PhraseExpression(std::span<const std::string_view> phrases);

  bool matches(std::string_view text) const;

 private:
  bool mayStandAt(std::string_view folded, std::size_t at) const;

  Regex expression_;
  // Case-folded, by the first byte: a place where none of them stands is no start of a match, so
  // that the expression runs at the few others alone.
  std::array<std::vector<std::string>, 256> phrases_;
};

// Made at the first use.
const PhraseExpression& nonProseExpression();
const PhraseExpression& writingExpression();

}  // namespace quillo
