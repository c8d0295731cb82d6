#include "hosts/linux/atspi/atspi_text.h"

#include <algorithm>
#include <limits>

#include "base/text.h"

namespace quillo::linux_host {
namespace {

constexpr uint screenCoordinates = 0;
// Of a text in so many pieces, the first make the rectangle.
constexpr std::size_t mostMeasuredParts = 64;

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

PixelRect around(const PixelRect& a, const PixelRect& b) {
  const std::int64_t left = std::min(a.x, b.x);
  const std::int64_t top = std::min(a.y, b.y);
  const std::int64_t right = std::max(std::int64_t{a.x} + a.width, std::int64_t{b.x} + b.width);
  const std::int64_t bottom = std::max(std::int64_t{a.y} + a.height, std::int64_t{b.y} + b.height);
  const auto length = [](std::int64_t from, std::int64_t to) {
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(to - from, std::numeric_limits<std::int32_t>::max()));
  };
  return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(top), length(left, right),
          length(top, bottom)};
}

}  // namespace

TextManner AtspiText::mannerOf(const ObjectReference& object) {
  switch (applications_.toolkitOf(object.bus)) {
    case Toolkit::qt:
    case Toolkit::libreOffice:
      return {OffsetUnit::utf16};
    case Toolkit::chromium:
      return {OffsetUnit::codePoints, true};
    default:
      return {};
  }
}

std::optional<TextPiece> AtspiText::read(const ObjectReference& object) {
  return readPieces(bus_, object, longestText, mannerOf(object));
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
    const TextManner manner = mannerOf(object);
    const bool isExact = manner.usual == OffsetUnit::codePoints && !manner.countsSelectionsTwice;
    if (isPlain && isExact) return text;
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

// All parts' questions go out together when they are of one application, as the parts of a field
// are.
std::optional<PixelRect> AtspiText::extents(const std::vector<TextPlace>& parts) {
  std::vector<AtspiCall> calls;
  for (const TextPlace& part : parts) {
    if (calls.size() >= mostMeasuredParts) break;
    const auto [begin, end] = ownRange(part);
    calls.push_back({part.piece->object,
                     atspi::text,
                     "GetRangeExtents",
                     {QVariant(begin), QVariant(end), QVariant(screenCoordinates)}});
  }
  std::optional<PixelRect> whole;
  for (const QDBusMessage& reply : bus_.ask(calls)) {
    const auto rect = rectangleIn(reply);
    if (rect && !isNothing(*rect)) whole = whole ? around(*whole, *rect) : *rect;
  }
  return whole;
}

// Toolkits often know no place of a caret; it is where the character beside it ends or begins.
std::optional<PixelRect> AtspiText::caretBounds(const TextPlace& place) {
  const std::u16string_view text = place.piece->text;
  if (text.empty()) return std::nullopt;
  const bool isBehind = place.begin > 0;
  const std::size_t character = isBehind ? place.begin - 1 : 0;
  const bool isPair = isBehind ? isTrailSurrogate(text[character]) : isLeadSurrogate(text[0]);
  const TextPlace beside = isBehind
                               ? TextPlace{place.piece, character - (isPair ? 1 : 0), place.begin}
                               : TextPlace{place.piece, 0, isPair ? std::size_t{2} : 1};
  const auto rect = extents({beside});
  if (!rect) return std::nullopt;
  return PixelRect{isBehind ? rect->x + rect->width : rect->x, rect->y, 0, rect->height};
}

std::optional<PixelRect> AtspiText::bounds(const ObjectReference& object, TextRange range) {
  const auto piece = read(object);
  if (!piece) return std::nullopt;
  const FlatText flat(*piece);
  if (range.length > 0) return extents(flat.parts(range));
  const auto place = flat.find(range);
  return place ? caretBounds(*place) : std::nullopt;
}

void AtspiText::prepareBounds(const ObjectReference& object) {
  if (applications_.toolkitOf(object.bus) != Toolkit::chromium) return;
  bus_.tell({object,
             atspi::text,
             "GetRangeExtents",
             {QVariant(0), QVariant(-1), QVariant(screenCoordinates)}});
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
  bus_.askOne({object, atspi::text, "RemoveSelection", {QVariant(0)}});
  bus_.tell({object, atspi::text, "AddSelection", {QVariant(begin), QVariant(end)}});
  const auto outline = outlineIn(bus_.ask(outlineCalls(object)));
  return outline && outline->selection == std::pair<std::int64_t, std::int64_t>{begin, end};
}

}  // namespace quillo::linux_host
