#include "hosts/linux/atspi/atspi_text.h"

#include "base/text.h"
#include "hosts/linux/atspi/text_pieces.h"

namespace quillo::linux_host {
namespace {

constexpr uint screenCoordinates = 0;

// The part in the units of its own application.
struct OwnRange {
  std::int32_t begin;
  std::int32_t end;
};
OwnRange ownRange(const TextPlace& place) {
  const TextPiece& piece = *place.piece;
  return {static_cast<std::int32_t>(fromUtf16Offset(piece.text, place.begin, piece.unit)),
          static_cast<std::int32_t>(fromUtf16Offset(piece.text, place.end, piece.unit))};
}

bool isNothing(const PixelRect& rect) {
  return rect.width <= 0 && rect.height <= 0;
}

}  // namespace

OffsetUnit AtspiText::usualUnit(const ObjectReference& object) {
  switch (applications_.toolkitOf(object.bus)) {
    case Toolkit::qt:
    case Toolkit::libreOffice:
      return OffsetUnit::utf16;
    default:
      return OffsetUnit::codePoints;
  }
}

std::optional<TextPiece> AtspiText::read(const ObjectReference& object) {
  return readPieces(bus_, object, longestText, usualUnit(object));
}

std::optional<std::int64_t> AtspiText::length(const ObjectReference& object) {
  if (const auto piece = read(object)) {
    return static_cast<std::int64_t>(FlatText(*piece).text().size());
  }
  const auto outline = outlineIn(bus_.ask(outlineCalls(object)));
  if (!outline || outline->length <= longestText) return std::nullopt;
  return outline->length;
}

std::optional<std::string> AtspiText::whole(const ObjectReference& object) {
  const auto piece = read(object);
  if (!piece) return std::nullopt;
  return fromUtf16(FlatText(*piece).text());
}

std::optional<TextRange> AtspiText::selection(const ObjectReference& object) {
  const auto piece = read(object);
  if (!piece) return std::nullopt;
  return FlatText(*piece).selection();
}

// The part alone is asked for where that is all the text there is: of a long text it is short.
std::optional<std::string> AtspiText::selectedText(const ObjectReference& object) {
  const auto outline = outlineIn(bus_.ask(outlineCalls(object)));
  if (!outline) return std::nullopt;
  if (outline->selection) {
    const auto [begin, end] = *outline->selection;
    if (end - begin > longestText) return std::nullopt;
    const auto text = textIn(bus_.askOne(textCall(object, begin, end)));
    const bool isPlain = text && toUtf16(*text).find(embeddedObject) == std::u16string::npos;
    // Where half a character was asked for, a toolkit may answer with another one.
    if (isPlain && usualUnit(object) == OffsetUnit::codePoints) return text;
  }
  const auto piece = read(object);
  if (!piece) return std::nullopt;
  const FlatText flat(*piece);
  const auto range = flat.selection();
  if (!range) return std::nullopt;
  return fromUtf16(std::u16string_view(flat.text())
                       .substr(static_cast<std::size_t>(range->location),
                               static_cast<std::size_t>(range->length)));
}

std::optional<PixelRect> AtspiText::extents(const ObjectReference& object, std::int32_t begin,
                                            std::int32_t end) {
  return rectangleIn(bus_.askOne({object,
                                  atspi::text,
                                  "GetRangeExtents",
                                  {QVariant(begin), QVariant(end), QVariant(screenCoordinates)}}));
}

// Toolkits often know no place of a caret; it is where the character beside it ends or begins.
std::optional<PixelRect> AtspiText::bounds(const ObjectReference& object, TextRange range) {
  const auto piece = read(object);
  if (!piece) return std::nullopt;
  const FlatText flat(*piece);
  const auto place = flat.find(range);
  if (!place) return std::nullopt;
  const ObjectReference& inner = place->piece->object;
  const auto [begin, end] = ownRange(*place);
  if (begin != end) return extents(inner, begin, end);
  if (place->piece->text.empty()) return std::nullopt;
  const bool isBehind = begin > 0;
  const auto rect = isBehind ? extents(inner, begin - 1, begin) : extents(inner, 0, 1);
  if (!rect || isNothing(*rect)) return std::nullopt;
  return PixelRect{isBehind ? rect->x + rect->width : rect->x, rect->y, 0, rect->height};
}

bool AtspiText::select(const ObjectReference& object, TextRange range) {
  const auto piece = read(object);
  if (!piece) return false;
  const FlatText flat(*piece);
  const auto place = flat.find(range);
  if (!place) return false;
  const ObjectReference& inner = place->piece->object;
  const auto [begin, end] = ownRange(*place);
  if (begin == end) {
    return booleanIn(bus_.askOne({inner, atspi::text, "SetCaretOffset", {QVariant(begin)}}))
        .value_or(false);
  }
  if (applications_.toolkitOf(object.bus) == Toolkit::gtk4) {
    return addSelectionUnanswered(inner, begin, end);
  }
  const auto outline = outlineIn(bus_.ask(outlineCalls(inner)));
  const bool isSelected = outline && outline->selectionCount > 0;
  const AtspiCall call =
      isSelected ? AtspiCall{inner, atspi::text, "SetSelection", {QVariant(0), begin, end}}
                 : AtspiCall{inner, atspi::text, "AddSelection", {QVariant(begin), end}};
  return booleanIn(bus_.askOne(call)).value_or(false);
}

// GTK 4 selects but never says so, and only where nothing is selected; what it says is selected
// afterwards is its answer.
bool AtspiText::addSelectionUnanswered(const ObjectReference& object, std::int32_t begin,
                                       std::int32_t end) {
  bus_.tell({object, atspi::text, "RemoveSelection", {QVariant(0)}});
  bus_.tell({object, atspi::text, "AddSelection", {QVariant(begin), QVariant(end)}});
  const auto outline = outlineIn(bus_.ask(outlineCalls(object)));
  return outline && outline->selection == std::pair<std::int64_t, std::int64_t>{begin, end};
}

}  // namespace quillo::linux_host
