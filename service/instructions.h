// The few instructions of a user's own prompt that rules can follow.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "service/layout_rules.h"
#include "service/polish_rules.h"

namespace quillo::service {

enum class LetterCase { asItIs, upper, lower };

struct Instructions {
  std::optional<Layout> layout;
  std::optional<Tone> tone;
  std::optional<std::string> targetLanguage;  // a code
  LetterCase letterCase = LetterCase::asItIs;
  bool withoutFillers = false;

  bool understood() const {
    return layout || tone || targetLanguage || letterCase != LetterCase::asItIs || withoutFillers;
  }
};

// What is understood of a prompt in English; the rest is ignored.
Instructions instructionsFrom(std::string_view prompt);

}  // namespace quillo::service
