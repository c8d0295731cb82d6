// The user's snippets: a spoken cue, and the full text that is typed in its place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/cue.h"
#include "core/cue_text.h"
#include "platform/user_defaults.h"

namespace quillo {

// Snippets ready to run. Main thread.
class Snippets {
 public:
  struct Result {
    std::string text;
    std::vector<std::string> used;  // texts of the snippets that had a match, longest cue first
  };

  // From records with "cue" and "text"; the ones that lack either are left out.
  explicit Snippets(const std::vector<TextDictionary>& snippets);

  // Longer cues go first, so that no shorter one cuts them; each works on the result of the one
  // before.
  Result apply(std::string_view text) const;

 private:
  struct Snippet {
    Cue cue;
    std::string text;
  };
  std::vector<Snippet> snippets_;
};

Snippets::Result applySnippets(const std::vector<TextDictionary>& snippets, std::string_view text);

}  // namespace quillo
