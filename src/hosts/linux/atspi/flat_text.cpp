#include "hosts/linux/atspi/flat_text.h"

#include <algorithm>

namespace quillo::linux_host {
namespace {

bool isPairAt(std::u16string_view text, std::size_t offset) {
  return offset + 1 < text.size() && isLeadSurrogate(text[offset]) &&
         isTrailSurrogate(text[offset + 1]);
}

std::int64_t codePointCount(std::u16string_view text) {
  std::int64_t count = 0;
  for (std::size_t i = 0; i < text.size(); i += isPairAt(text, i) ? 2 : 1) ++count;
  return count;
}

}  // namespace

OffsetUnit offsetUnit(std::u16string_view text, std::int64_t claimedLength, OffsetUnit otherwise) {
  const std::int64_t points = codePointCount(text);
  const auto units = static_cast<std::int64_t>(text.size());
  if (points == units) return otherwise;
  if (claimedLength == points) return OffsetUnit::codePoints;
  if (claimedLength == units) return OffsetUnit::utf16;
  return otherwise;
}

std::size_t toUtf16Offset(std::u16string_view text, std::int64_t offset, OffsetUnit unit) {
  if (offset <= 0) return 0;
  if (unit == OffsetUnit::utf16) return std::min(static_cast<std::size_t>(offset), text.size());
  std::size_t at = 0;
  for (; offset > 0 && at < text.size(); --offset) at += isPairAt(text, at) ? 2 : 1;
  return at;
}

std::int64_t fromUtf16Offset(std::u16string_view text, std::size_t offset, OffsetUnit unit) {
  const std::size_t within = std::min(offset, text.size());
  if (unit == OffsetUnit::utf16) return static_cast<std::int64_t>(within);
  const bool cutsPair = within > 0 && isPairAt(text, within - 1);
  return codePointCount(text.substr(0, cutsPair ? within - 1 : within));
}

FlatText::FlatText(const TextPiece& root) : root_(lay(root)) {}

void FlatText::put(char16_t unit) {
  if (needsBreak_) text_ += u'\n';
  needsBreak_ = false;
  isAtBlockStart_ = false;
  text_ += unit;
}

void FlatText::beginBlock() {
  if (!isAtBlockStart_) text_ += u'\n';
  isAtBlockStart_ = true;
  needsBreak_ = false;
}

void FlatText::endBlock() {
  isAtBlockStart_ = false;
  needsBreak_ = true;
}

FlatText::Laid FlatText::lay(const TextPiece& piece) {
  Laid laid{&piece, {}, {}, {}};
  laid.units.reserve(piece.text.size());
  laid.pieces.reserve(piece.pieces.size());
  const bool isBlock = piece.flow == TextPiece::Flow::block;
  if (isBlock) beginBlock();
  laid.whole.begin = text_.size();
  for (const char16_t unit : piece.text) {
    if (unit == embeddedObject && laid.pieces.size() < piece.pieces.size()) {
      laid.pieces.push_back(lay(piece.pieces[laid.pieces.size()]));
      laid.units.push_back(laid.pieces.back().whole);
    } else {
      put(unit);
      laid.units.push_back({text_.size() - 1, text_.size()});
    }
  }
  laid.whole.end = text_.size();
  if (isBlock) endBlock();
  // A break that was due went before the first unit.
  if (!laid.units.empty()) laid.whole.begin = laid.units.front().begin;
  return laid;
}

std::size_t FlatText::flatOffset(const Laid& laid, std::size_t offset) {
  if (offset < laid.units.size()) return laid.units[offset].begin;
  return laid.whole.end;
}

// Each object tells its own part; the mark of one within it is counted by that one.
std::optional<FlatText::Extent> FlatText::selected(const Laid& laid) {
  std::optional<Extent> result;
  const auto include = [&result](Extent part) {
    if (!result) result = part;
    result = Extent{std::min(result->begin, part.begin), std::max(result->end, part.end)};
  };
  if (const auto& own = laid.piece->selection) {
    for (std::size_t i = own->first; i < std::min(own->second, laid.units.size()); ++i) {
      if (!isMark(laid, i)) include(laid.units[i]);
    }
  }
  for (const Laid& inner : laid.pieces) {
    if (const auto part = selected(inner)) include(*part);
  }
  return result;
}

std::optional<std::size_t> FlatText::caret(const Laid& laid) {
  for (const Laid& inner : laid.pieces) {
    if (const auto found = caret(inner)) return found;
  }
  if (!laid.piece->caret) return std::nullopt;
  return flatOffset(laid, *laid.piece->caret);
}

std::optional<TextRange> FlatText::selection() const {
  if (const auto range = selected(root_); range && range->end > range->begin) {
    return TextRange{static_cast<std::int64_t>(range->begin),
                     static_cast<std::int64_t>(range->end - range->begin)};
  }
  const auto offset = caret(root_);
  if (!offset) return std::nullopt;
  return TextRange{static_cast<std::int64_t>(*offset), 0};
}

std::optional<FlatText::Extent> FlatText::extentOf(TextRange range) const {
  const auto size = static_cast<std::int64_t>(text_.size());
  if (range.location < 0 || range.length < 0 || range.location > size ||
      range.length > size - range.location) {
    return std::nullopt;
  }
  const auto begin = static_cast<std::size_t>(range.location);
  return Extent{begin, begin + static_cast<std::size_t>(range.length)};
}

std::optional<TextPlace> FlatText::find(TextRange range) const {
  const auto extent = extentOf(range);
  return extent ? find(root_, extent->begin, extent->end) : std::nullopt;
}

std::vector<TextPlace> FlatText::parts(TextRange range) const {
  std::vector<TextPlace> parts;
  if (const auto extent = extentOf(range)) collect(root_, *extent, parts);
  return parts;
}

// A mark stands for an object within; the character itself may also be what the user wrote.
bool FlatText::isMark(const Laid& laid, std::size_t unit) {
  return laid.piece->text[unit] == embeddedObject && !laid.pieces.empty();
}

void FlatText::collect(const Laid& laid, Extent range, std::vector<TextPlace>& parts) {
  std::optional<TextPlace> own;
  for (std::size_t i = 0; i < laid.units.size(); ++i) {
    const Extent& unit = laid.units[i];
    if (isMark(laid, i) || unit.begin < range.begin || unit.end > range.end) continue;
    if (!own) own = TextPlace{laid.piece, i, i};
    own->end = i + 1;
  }
  if (own) parts.push_back(*own);
  for (const Laid& inner : laid.pieces) collect(inner, range, parts);
}

std::optional<TextPlace> FlatText::find(const Laid& laid, std::size_t begin, std::size_t end) {
  for (const Laid& inner : laid.pieces) {
    if (begin < inner.whole.begin || end > inner.whole.end) continue;
    if (const auto found = find(inner, begin, end)) return found;
  }
  const auto& units = laid.units;
  if (begin == end && begin == laid.whole.end) {
    return TextPlace{laid.piece, units.size(), units.size()};
  }
  const auto first = std::ranges::find(units, begin, &Extent::begin);
  if (first == units.end()) return std::nullopt;
  const auto from = static_cast<std::size_t>(first - units.begin());
  if (begin == end) return TextPlace{laid.piece, from, from};
  const auto last = std::ranges::find(units, end, &Extent::end);
  if (last == units.end() || last < first) return std::nullopt;
  return TextPlace{laid.piece, from, static_cast<std::size_t>(last - units.begin()) + 1};
}

}  // namespace quillo::linux_host
