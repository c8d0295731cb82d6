#include "shell/review/review_verdict.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "base/text.h"

namespace quillo {
namespace {

constexpr double enoughInCommon = 0.5;

// Runs of letters, marks and digits, in lower case; single characters say too little.
std::vector<std::string> tokens(std::string_view text) {
  static const Regex word = *Regex::compile("[\\p{L}\\p{M}\\p{N}]+", Regex::Case::sensitive);
  const std::string lower = canonicalForm(lowercased(text));
  std::vector<std::string> tokens;
  for (const auto& [begin, end] : word.matches(lower)) {
    std::string token = lower.substr(begin, end - begin);
    if (characterCount(token) > 1) tokens.push_back(std::move(token));
  }
  return tokens;
}

}  // namespace

ReviewVerdict reviewVerdict(std::string_view youSaid, std::string_view means) {
  if (means.empty()) return ReviewVerdict::matches;
  const std::vector<std::string> said = tokens(youSaid);
  if (said.empty()) return ReviewVerdict::matches;
  const std::vector<std::string> meant = tokens(means);

  const std::set<std::string> distinct(said.begin(), said.end());
  const std::set<std::string> distinctMeant(meant.begin(), meant.end());
  const auto common = std::ranges::count_if(
      distinct, [&](const std::string& token) { return distinctMeant.contains(token); });
  const double ratio =
      static_cast<double>(common) / static_cast<double>(std::max(said.size(), meant.size()));
  return ratio >= enoughInCommon ? ReviewVerdict::matches : ReviewVerdict::mayDiffer;
}

}  // namespace quillo
