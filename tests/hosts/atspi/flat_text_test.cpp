// A field's text as one piece: offsets of every toolkit, and paragraphs that are objects.
#include <gmock/gmock.h>

#include "base/text.h"
#include "hosts/linux/atspi/flat_text.h"

namespace quillo::linux_host {
namespace {

using Flow = TextPiece::Flow;

TextPiece piece(std::string_view text, Flow flow, std::vector<TextPiece> inner = {}) {
  TextPiece made;
  made.text = toUtf16(text);
  made.flow = flow;
  made.pieces = std::move(inner);
  return made;
}

// As a browser tells an editor with two paragraphs, an empty one between them, and a link.
TextPiece editor() {
  return piece("\uFFFC\uFFFC\uFFFC", Flow::line,
               {piece("one 🎙 two", Flow::block), piece("", Flow::block),
                piece("three and a \uFFFC.", Flow::block, {piece("link", Flow::line)})});
}

TEST(FlatTextTest, ParagraphsThatAreObjectsAreLines) {
  const TextPiece root = editor();
  EXPECT_EQ(fromUtf16(FlatText(root).text()), "one 🎙 two\n\nthree and a link.");
  const TextPiece nested = piece("before\uFFFCafter", Flow::line,
                                 {piece("\uFFFC", Flow::block, {piece("within", Flow::block)})});
  EXPECT_EQ(fromUtf16(FlatText(nested).text()), "before\nwithin\nafter");
}

TEST(FlatTextTest, APlaceIsFoundInTheInnermostObjectThatHoldsIt) {
  const TextPiece root = editor();
  const FlatText flat(root);
  struct Case {
    TextRange range;
    const TextPiece* piece;
    std::size_t begin;
    std::size_t end;
  };
  const TextPiece& last = root.pieces[2];
  for (const Case& each : {Case{{7, 3}, root.pieces.data(), 7, 10},
                           {{12, 17}, &last, 0, 14},
                           {{24, 4}, last.pieces.data(), 0, 4},
                           {{0, 29}, &root, 0, 3},
                           {{11, 0}, &root.pieces[1], 0, 0},
                           {{29, 0}, &last, 14, 14}}) {
    const auto place = flat.find(each.range);
    ASSERT_TRUE(place) << each.range.location;
    EXPECT_EQ(place->piece, each.piece) << each.range.location;
    EXPECT_EQ(place->begin, each.begin) << each.range.location;
    EXPECT_EQ(place->end, each.end) << each.range.location;
  }
  for (const TextRange range : {TextRange{5, 10}, {20, 6}, {-1, 2}, {28, 9}, {3, -1}})
    EXPECT_FALSE(flat.find(range)) << "cuts through an object, or is none: " << range.location;
}

TEST(FlatTextTest, EachObjectTellsItsOwnPartOfTheSelection) {
  TextPiece root = editor();
  root.caret = 3;
  EXPECT_EQ(FlatText(root).selection(), (TextRange{29, 0}));
  root.pieces[2].caret = 5;
  EXPECT_EQ(FlatText(root).selection(), (TextRange{17, 0})) << "the innermost caret is meant";
  // From within the first paragraph into the link; the marks of both count as selected, too.
  root.selection = {0, 3};
  root.pieces[0].selection = {7, 10};
  root.pieces[2].selection = {0, 13};
  root.pieces[2].pieces[0].selection = {0, 2};
  EXPECT_EQ(FlatText(root).selection(), (TextRange{7, 19}));
}

TEST(FlatTextTest, OffsetsOfCodePointsAndOfUtf16UnitsAreToldApartByTheLength) {
  const std::u16string text = u"a🎙b";
  EXPECT_EQ(offsetUnit(text, 3, OffsetUnit::utf16), OffsetUnit::codePoints);
  EXPECT_EQ(offsetUnit(text, 4, OffsetUnit::codePoints), OffsetUnit::utf16);
  EXPECT_EQ(offsetUnit(text, 7, OffsetUnit::utf16), OffsetUnit::utf16) << "neither fits";
  EXPECT_EQ(toUtf16Offset(text, 2, OffsetUnit::codePoints), 3u);
  EXPECT_EQ(toUtf16Offset(text, 99, OffsetUnit::codePoints), 4u);
  EXPECT_EQ(toUtf16Offset(text, -5, OffsetUnit::utf16), 0u);
  EXPECT_EQ(fromUtf16Offset(text, 3, OffsetUnit::codePoints), 2);
  EXPECT_EQ(fromUtf16Offset(text, 2, OffsetUnit::codePoints), 1) << "within the pair";
}

}  // namespace
}  // namespace quillo::linux_host
