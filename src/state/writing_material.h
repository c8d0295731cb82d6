// The values that say how a text is to be written: polish mode, tone and format.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

struct WritingChoice {
  std::string_view value;  // as stored and as sent to the service
  std::string_view label;
  std::string_view note = {};
};

inline constexpr std::array<WritingChoice, 3> transformModes = {{
    {"auto", "Auto",
     "Adapts to what you dictate — stays direct when the text is already clean, polishes only when "
     "needed."},
    {"direct", "Direct"},
    {"improve", "Improve"},
}};
inline constexpr std::array<WritingChoice, 3> tones = {{
    {"neutral", "Neutral"},
    {"professional", "Professional"},
    {"friendly", "Friendly"},
}};
inline constexpr std::array<WritingChoice, 4> formatStyles = {{
    {"auto", "Smart"},
    {"paragraphs", "Paragraphs"},
    {"bullets", "Bullets"},
    {"none", "One Block"},
}};

// "auto", "direct" or "improve", for any value that this or an older version has stored.
std::string normalizedMode(const std::optional<std::string>& value);

// The label of the normalised mode.
std::string modeLabel(std::string_view transformMode);
// Unknown values have the label of the first choice.
std::string toneLabel(std::string_view tone);
std::string formatLabel(std::string_view formatStyle);

}  // namespace quillo
