#include "state/writing_material.h"

#include <algorithm>
#include <span>

#include "base/text.h"

namespace quillo {
namespace {

constexpr auto directNames =
    std::to_array<std::string_view>({"direct", "keep_words", "transcribe", "raw", "exact"});
constexpr auto improveNames = std::to_array<std::string_view>(
    {"improve", "polish", "grammar", "rephrase", "grammar_rephrase"});

bool isOneOf(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

Literal labelOf(std::span<const WritingChoice> choices, std::string_view value) {
  const auto found = std::ranges::find(choices, value, &WritingChoice::value);
  return found == choices.end() ? choices.front().label : found->label;
}

}  // namespace

std::string normalizedMode(const std::optional<std::string>& value) {
  const std::string name = trimmed(value.value_or(""));
  if (isOneOf(directNames, name)) return "direct";
  if (isOneOf(improveNames, name)) return "improve";
  return "auto";
}

Literal modeLabel(std::string_view transformMode) {
  return labelOf(transformModes, normalizedMode(std::string(transformMode)));
}
Literal toneLabel(std::string_view tone) {
  return labelOf(tones, tone);
}
Literal formatLabel(std::string_view formatStyle) {
  return labelOf(formatStyles, formatStyle);
}

}  // namespace quillo
