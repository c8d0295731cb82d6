#include "core/cue_text.h"

#include <algorithm>
#include <cstring>

namespace quillo {
namespace {

// A text and its folding, put together from pieces of others.
struct Splice {
  std::string text;
  CaseFolded folded;

  void append(std::string_view piece, std::string_view foldedPiece,
              std::span<const std::uint32_t> origins, std::size_t firstOrigin) {
    const auto shift = static_cast<std::uint32_t>(text.size() - firstOrigin);
    text += piece;
    folded.text += foldedPiece;
    folded.origins.resize(folded.origins.size() + origins.size());
    std::transform(origins.begin(), origins.end(),
                   std::prev(folded.origins.end(), std::ssize(origins)),
                   [shift](std::uint32_t origin) { return origin + shift; });
  }
};

}  // namespace

CueText::CueText(std::string_view text) : text_(text), folded_(caseFolded(text)) {}

std::size_t CueText::replaceAll(const Cue& cue,
                                const std::function<std::string(std::string_view)>& replacement) {
  const std::vector<Regex::Range> matches = cue.matchesAt(text_, occurrences(cue.folded()));
  if (matches.empty()) return 0;

  const std::string_view text = text_;
  const std::string_view folded = folded_.text;
  const std::span<const std::uint32_t> origins = folded_.origins;
  Splice result;
  result.folded.origins.reserve(origins.size());
  std::size_t begin = 0;
  const auto keepUpTo = [&](std::size_t end) {
    const std::size_t from = foldedOffset(begin);
    const std::size_t count = foldedOffset(end) - from;
    result.append(text.substr(begin, end - begin), folded.substr(from, count),
                  origins.subspan(from, count), begin);
  };
  for (const Regex::Range& match : matches) {
    keepUpTo(match.begin);
    const std::string piece = replacement(text.substr(match.begin, match.end - match.begin));
    const CaseFolded foldedPiece = caseFolded(piece);
    result.append(piece, foldedPiece.text, foldedPiece.origins, 0);
    begin = match.end;
  }
  keepUpTo(text.size());
  text_ = std::move(result.text);
  folded_ = std::move(result.folded);
  return matches.size();
}

std::vector<std::size_t> CueText::occurrences(std::string_view folded) const {
  std::vector<std::size_t> starts;
  const std::string& all = folded_.text;
  for (std::size_t from = 0; from < all.size();) {
    const void* found = memmem(all.data() + from, all.size() - from, folded.data(), folded.size());
    if (!found) break;
    const auto at = static_cast<std::size_t>(static_cast<const char*>(found) - all.data());
    starts.push_back(folded_.origins[at]);
    from = at + 1;
  }
  return starts;
}

std::size_t CueText::foldedOffset(std::size_t offset) const {
  const auto& origins = folded_.origins;
  return static_cast<std::size_t>(std::lower_bound(origins.begin(), origins.end(), offset) -
                                  origins.begin());
}

}  // namespace quillo
