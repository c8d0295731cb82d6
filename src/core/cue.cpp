#include "core/cue.h"

#include <algorithm>
#include <array>

namespace quillo {
namespace {

struct ScalarRange {
  char32_t first;
  char32_t last;
};

constexpr std::array scriptsWithoutWordSpaces = {
    ScalarRange{0x0E00, 0x0EFF},  // Thai, Lao
    ScalarRange{0x1000, 0x109F},  // Myanmar
    ScalarRange{0x1780, 0x17FF},  // Khmer
    ScalarRange{0x3040, 0x30FF},  // Hiragana, Katakana
    ScalarRange{0x3400, 0x4DBF},  // Han, extension A
    ScalarRange{0x4E00, 0x9FFF},  // Han
    ScalarRange{0xAC00, 0xD7AF},  // Hangul
    ScalarRange{0xF900, 0xFAFF},  // Han, compatibility
};

bool isWithoutWordSpaces(char32_t scalar) {
  return std::any_of(
      scriptsWithoutWordSpaces.begin(), scriptsWithoutWordSpaces.end(),
      [scalar](ScalarRange range) { return scalar >= range.first && scalar <= range.last; });
}

std::string patternOf(std::string_view literal) {
  std::string escaped = Regex::escaped(literal);
  const std::vector<char32_t> all = scalars(literal);
  if (std::any_of(all.begin(), all.end(), isWithoutWordSpaces)) return escaped;
  return "\\b" + escaped + "\\b";
}

}  // namespace

Cue::Cue(std::string_view literal)
    : literal_(trimmed(literal)),
      characterCount_(quillo::characterCount(literal_)),
      folded_(caseFolded(literal_).text) {}

std::vector<Regex::Range> Cue::matchesAt(std::string_view text,
                                         std::span<const std::size_t> starts) const {
  if (starts.empty()) return {};
  if (!isCompiled_) pattern_ = Regex::compile(patternOf(literal_), Regex::Case::insensitive);
  isCompiled_ = true;
  return pattern_ ? pattern_->matchesAt(text, starts) : std::vector<Regex::Range>{};
}

}  // namespace quillo
