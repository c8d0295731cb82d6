#include "core/replacement_rules.h"

#include <algorithm>
#include <optional>

namespace quillo {
namespace {

std::optional<std::string> valueOf(const TextDictionary& record, const std::string& key) {
  const auto found = record.find(key);
  return found == record.end() ? std::nullopt : std::optional(found->second);
}

bool canAct(const TextDictionary& rule) {
  const auto from = valueOf(rule, "from");
  const auto to = valueOf(rule, "to");
  return from && !isBlank(*from) && to && !to->empty() && valueOf(rule, "enabled") != "false";
}

bool hasCapital(std::string_view text) {
  bool found = false;
  forEachCharacter(text, [&found](std::string_view each) { found = found || isUppercase(each); });
  return found;
}

bool isSmallAscii(char c) {
  return c >= 'a' && c <= 'z';
}

bool isInCapitals(std::string_view text) {
  // Most words end here, without a case mapping.
  if (std::any_of(text.begin(), text.end(), isSmallAscii)) return false;
  return characterCount(text) > 1 && textEquals(text, uppercased(text)) &&
         !textEquals(text, lowercased(text));
}

}  // namespace

ReplacementRules::ReplacementRules(const std::vector<TextDictionary>& rules) {
  for (const TextDictionary& rule : rules) {
    if (canAct(rule)) rules_.push_back({Cue(rule.at("from")), rule.at("to")});
  }
}

std::string ReplacementRules::apply(std::string_view text) const {
  if (rules_.empty() || text.empty()) return std::string(text);
  CueText result(text);
  for (const Rule& rule : rules_) {
    result.replaceAll(rule.from,
                      [&rule](std::string_view matched) { return matchCase(rule.to, matched); });
  }
  return result.text();
}

std::string applyReplacements(const std::vector<TextDictionary>& rules, std::string_view text) {
  return ReplacementRules(rules).apply(text);
}

std::string matchCase(std::string_view replacement, std::string_view matched) {
  if (hasCapital(replacement)) return std::string(replacement);
  if (isInCapitals(matched)) return uppercased(replacement);
  if (isUppercase(prefixCharacters(matched, 1))) {
    return uppercased(prefixCharacters(replacement, 1)) + dropFirstCharacters(replacement, 1);
  }
  return std::string(replacement);
}

}  // namespace quillo
