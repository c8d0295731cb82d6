// A text in which many cues are replaced.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "core/cue.h"

namespace quillo {

// Cues are replaced one after the other, each in the result of the one before. The text is kept in
// full case folding beside itself, so that a cue that is not in it costs one search for bytes, and
// a pattern runs only where its cue can begin.
class CueText {
 public:
  explicit CueText(std::string_view text);

  const std::string& text() const { return text_; }
  // Replaces every match of `cue` by what `replacement` makes of the matched text; their number.
  std::size_t replaceAll(const Cue& cue,
                         const std::function<std::string(std::string_view)>& replacement);

 private:
  // Where the folded cue stands: every match begins at one of these.
  std::vector<std::size_t> occurrences(std::string_view folded) const;
  std::size_t foldedOffset(std::size_t offset) const;

  std::string text_;
  CaseFolded folded_;
};

}  // namespace quillo
