// What of a text may be offered for rewriting.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "insertion/classification/selection_trigger.h"
#include "platform/accessibility.h"

namespace quillo {

// Characters.
inline constexpr std::size_t longestSelection = 4000;
inline constexpr std::size_t shortSelection = 15;
inline constexpr std::int64_t longestWholeField = 2000;
inline constexpr std::int64_t longestField = 200'000;
// UTF-16 units.
inline constexpr std::int64_t longestParagraph = 2000;

// Something but blanks and newlines, and not too long. Edges count for the length alone.
bool isAcceptedSelection(std::string_view text);
// A lone word is not worth a bubble, unless the user asked for one.
bool isLongEnough(std::string_view text, SelectionTrigger trigger);

// The paragraph around a place in the text, without its newlines; the place is moved into the text.
// Nothing when it is empty or too long.
std::optional<TextRange> paragraphAt(std::u16string_view text, std::int64_t caret);

}  // namespace quillo
