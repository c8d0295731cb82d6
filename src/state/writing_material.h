// The values that say how a text is to be written: polish mode, tone and format.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/words.h"

namespace quillo {

struct WritingChoice {
  std::string_view value;  // as stored and as sent to the service
  Literal label;
  Literal note = {};
};

inline constexpr std::array<WritingChoice, 3> transformModes = {{
    {"auto", words("Auto"),
     words("Adapts to what you dictate — stays direct when the text is already clean, polishes "
           "only when "
           "needed.")},
    {"direct", words("Direct")},
    {"improve", words("Improve")},
}};
inline constexpr std::array<WritingChoice, 3> tones = {{
    {"neutral", words("Neutral")},
    {"professional", words("Professional")},
    {"friendly", words("Friendly")},
}};
inline constexpr std::array<WritingChoice, 4> formatStyles = {{
    {"auto", words("Smart")},
    {"paragraphs", words("Paragraphs")},
    {"bullets", words("Bullets")},
    {"none", words("One Block")},
}};

// "auto", "direct" or "improve", for any value that this or an older version has stored.
std::string normalizedMode(const std::optional<std::string>& value);

// The label of the normalised mode.
Literal modeLabel(std::string_view transformMode);
// Unknown values have the label of the first choice.
Literal toneLabel(std::string_view tone);
Literal formatLabel(std::string_view formatStyle);

}  // namespace quillo
