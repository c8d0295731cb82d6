// The user's replacement rules: what was heard, and what it must read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/cue.h"
#include "core/cue_text.h"
#include "platform/user_defaults.h"

namespace quillo {

// Rules ready to run. Main thread.
class ReplacementRules {
 public:
  // From records with "from", "to" and perhaps "enabled"; the ones that cannot act are left out.
  explicit ReplacementRules(const std::vector<TextDictionary>& rules);

  // Each rule works on the result of the one before.
  std::string apply(std::string_view text) const;

 private:
  struct Rule {
    Cue from;
    std::string to;
  };
  std::vector<Rule> rules_;
};

std::string applyReplacements(const std::vector<TextDictionary>& rules, std::string_view text);

// `replacement` in the case of the text that it replaces, unless the user gave it capitals.
std::string matchCase(std::string_view replacement, std::string_view matched);

}  // namespace quillo
