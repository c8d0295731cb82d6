// The text of a field as one piece, and the way back from a part of it to the object that holds it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/linux/atspi/atspi_object.h"
#include "platform/accessibility.h"

namespace quillo::linux_host {

constexpr bool isLeadSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isTrailSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// What an application counts in.
enum class OffsetUnit { codePoints, utf16 };

// Told from the text and the length that the application claims for it; `otherwise` when both fit.
OffsetUnit offsetUnit(std::u16string_view text, std::int64_t claimedLength, OffsetUnit otherwise);
// Both keep within the text. An offset within a surrogate pair is the pair's own.
std::size_t toUtf16Offset(std::u16string_view text, std::int64_t offset, OffsetUnit unit);
std::int64_t fromUtf16Offset(std::u16string_view text, std::size_t offset, OffsetUnit unit);

// Stands in an object's text for an object within it.
inline constexpr char16_t embeddedObject = u'\uFFFC';

// An object's own text, with those of the objects that stand in it. Offsets are in UTF-16 units of
// its own text.
struct TextPiece {
  ObjectReference object;
  std::u16string text;
  OffsetUnit unit = OffsetUnit::codePoints;
  enum class Flow { line, block } flow = Flow::line;  // a block begins and ends a line
  std::optional<std::size_t> caret;
  std::optional<std::pair<std::size_t, std::size_t>> selection;  // begin, end
  std::vector<TextPiece> pieces;                                 // in the order of their marks
};

// A part of one object's own text, in UTF-16 units.
struct TextPlace {
  const TextPiece* piece;
  std::size_t begin;
  std::size_t end;
};

// Blocks are joined by line feeds. Refers to `root`, which outlives it.
class FlatText {
 public:
  explicit FlatText(const TextPiece& root);

  const std::u16string& text() const { return text_; }
  // What is selected, or the empty range at the caret; nothing when there is neither.
  std::optional<TextRange> selection() const;
  // The innermost object that holds all of the range. Nothing when the range cuts through an object
  // that stands in its text, or lies beyond the text.
  std::optional<TextPlace> find(TextRange range) const;
  // Each object's own part of the range, without the marks of others.
  std::vector<TextPlace> parts(TextRange range) const;

 private:
  // Where a unit of an object's own text begins and ends in the flat one.
  struct Extent {
    std::size_t begin;
    std::size_t end;
  };
  struct Laid {
    const TextPiece* piece;
    std::vector<Extent> units;
    std::vector<Laid> pieces;
    Extent whole;
  };

  Laid lay(const TextPiece& piece);
  void put(char16_t unit);
  void beginBlock();
  void endBlock();
  static std::optional<Extent> selected(const Laid& laid);
  static std::optional<std::size_t> caret(const Laid& laid);
  static std::optional<TextPlace> find(const Laid& laid, std::size_t begin, std::size_t end);
  static void collect(const Laid& laid, Extent range, std::vector<TextPlace>& parts);
  static bool isMark(const Laid& laid, std::size_t unit);
  std::optional<Extent> extentOf(TextRange range) const;
  static std::size_t flatOffset(const Laid& laid, std::size_t offset);

  std::u16string text_;
  bool isAtBlockStart_ = true;
  bool needsBreak_ = false;
  Laid root_;
};

}  // namespace quillo::linux_host
