// What is looked for in a transcript: literal text, whatever its case.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace quillo {

// Matches whole words, but anywhere when the cue holds a character of a script that is written
// without word spaces. The pattern is compiled at the first possible match and kept. Main thread.
class Cue {
 public:
  // Blanks around `literal` do not count; something else must be in it.
  explicit Cue(std::string_view literal);

  // In full case folding.
  const std::string& folded() const { return folded_; }
  std::size_t characterCount() const { return characterCount_; }
  // The matches that begin at one of `starts`, in rising order and without overlap.
  std::vector<Regex::Range> matchesAt(std::string_view text,
                                      std::span<const std::size_t> starts) const;

 private:
  std::string literal_;
  std::size_t characterCount_;
  std::string folded_;
  mutable std::optional<Regex> pattern_;
  mutable bool isCompiled_ = false;
};

}  // namespace quillo
