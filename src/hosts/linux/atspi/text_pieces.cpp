#include "hosts/linux/atspi/text_pieces.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "base/text.h"
#include "hosts/linux/atspi/ax_roles.h"
#include "hosts/linux/atspi/dbus_values.h"

namespace quillo::linux_host {
namespace {

constexpr std::size_t mostPieces = 500;
constexpr int deepestPiece = 16;

// Tags whose text goes on in the same line.
constexpr std::array<std::string_view, 16> lineTags = {
    "a", "abbr", "b",    "code", "em",     "font", "i",   "img",
    "q", "s",    "span", "mark", "strong", "sub",  "sup", "u"};
// The bullet of a list, which is not what the user wrote.
constexpr std::string_view bulletTag = "::marker";

bool isLineRole(AtspiRole role) {
  return role == AtspiRole::link || role == AtspiRole::staticText || role == AtspiRole::label ||
         role == AtspiRole::image || role == AtspiRole::pushButton;
}

TextPiece::Flow flowOf(AtspiRole role, std::string_view tag) {
  const bool isInLine =
      isLineRole(role) || tag == bulletTag || std::ranges::find(lineTags, tag) != lineTags.end();
  return isInLine ? TextPiece::Flow::line : TextPiece::Flow::block;
}

void fill(TextPiece& piece, const std::string& text, const TextOutline& outline,
          TextManner manner) {
  piece.text = toUtf16(text);
  piece.unit = offsetUnit(piece.text, outline.length, manner.usual);
  const auto offset = [&piece](std::int64_t own) {
    return toUtf16Offset(piece.text, own, piece.unit);
  };
  if (outline.caret) piece.caret = offset(*outline.caret);
  if (!outline.selection) return;
  std::pair<std::size_t, std::size_t> once = {offset(outline.selection->first),
                                              offset(outline.selection->second)};
  // The caret is at one end of a selection that was counted well.
  const bool isWell = piece.caret == once.first || piece.caret == once.second;
  if (manner.countsSelectionsTwice && !isWell) {
    once = {offset(static_cast<std::int64_t>(once.first)),
            offset(static_cast<std::int64_t>(once.second))};
  }
  piece.selection = once;
}

// An empty paragraph holds a line feed of its own, beside the one that the block makes.
void dropLastLineFeed(TextPiece& piece) {
  if (piece.flow == TextPiece::Flow::block && piece.text.ends_with(u'\n')) piece.text.pop_back();
}

std::vector<AtspiCall> innerCalls(const ObjectReference& object) {
  std::vector<AtspiCall> calls = outlineCalls(object);
  calls.push_back({object, atspi::accessible, "GetRole"});
  calls.push_back({object, atspi::accessible, "GetAttributes"});
  calls.push_back(textCall(object, 0, -1));
  return calls;
}
constexpr std::size_t innerCallCount = outlineCallCount + 3;

// Such children are part of the text itself, and no mark stands for them.
bool isInText(const QDBusMessage& role) {
  return unsignedIn(role) == static_cast<std::uint32_t>(AtspiRole::staticText);
}

TextPiece innerPiece(ObjectReference object, std::span<const QDBusMessage> replies,
                     TextManner manner) {
  const auto role = static_cast<AtspiRole>(unsignedIn(replies[outlineCallCount]).value_or(0));
  const auto attributes = attributesIn(replies[outlineCallCount + 1]).value_or(AtspiAttributes());
  const std::string_view tag = attributeOf(attributes, "tag");
  TextPiece piece;
  piece.object = std::move(object);
  piece.flow = flowOf(role, tag);
  const auto outline = outlineIn(replies.first(outlineCallCount));
  const auto text = textIn(replies[outlineCallCount + 2]);
  if (outline && text && tag != bulletTag && !isSecret(role)) {
    fill(piece, *text, *outline, manner);
    dropLastLineFeed(piece);
  }
  return piece;
}

// The objects in the pieces' texts, with the piece that each stands in; one round trip.
std::vector<std::pair<TextPiece*, ObjectReference>> innerObjects(
    AtspiBus& bus, const std::vector<TextPiece*>& level) {
  std::vector<AtspiCall> calls;
  for (const TextPiece* piece : level) {
    calls.push_back({piece->object, atspi::accessible, "GetChildren"});
  }
  const auto replies = bus.ask(calls);
  std::vector<std::pair<TextPiece*, ObjectReference>> found;
  for (std::size_t i = 0; i < replies.size(); ++i) {
    for (auto& child : referencesIn(replies[i]).value_or(std::vector<ObjectReference>())) {
      if (found.size() < mostPieces) found.emplace_back(level[i], std::move(child));
    }
  }
  return found;
}

bool hasMarks(const TextPiece* piece) {
  return piece->text.find(embeddedObject) != std::u16string::npos;
}

// The next level of pieces, of which some may hold marks in turn.
std::vector<TextPiece*> readLevel(AtspiBus& bus, const std::vector<TextPiece*>& level,
                                  TextManner manner) {
  auto found = innerObjects(bus, level);
  std::vector<AtspiCall> calls;
  for (const auto& [outer, object] : found) {
    std::ranges::move(innerCalls(object), std::back_inserter(calls));
  }
  const auto replies = bus.ask(calls);
  if (replies.size() != found.size() * innerCallCount) return {};
  for (std::size_t i = 0; i < found.size(); ++i) {
    const auto answers = std::span(replies).subspan(i * innerCallCount, innerCallCount);
    if (isInText(answers[outlineCallCount])) continue;
    found[i].first->pieces.push_back(innerPiece(std::move(found[i].second), answers, manner));
  }
  std::vector<TextPiece*> next;
  for (TextPiece* outer : level) {
    for (TextPiece& inner : outer->pieces) next.push_back(&inner);
  }
  return next;
}

}  // namespace

std::vector<AtspiCall> outlineCalls(const ObjectReference& object) {
  return {propertyOf(object, atspi::text, "CharacterCount"),
          propertyOf(object, atspi::text, "CaretOffset"),
          {object, atspi::text, "GetNSelections"},
          {object, atspi::text, "GetSelection", {QVariant(0)}}};
}

std::optional<TextOutline> outlineIn(std::span<const QDBusMessage> replies) {
  if (replies.size() < outlineCallCount) return std::nullopt;
  const auto length = integerPropertyIn(replies[0]);
  if (!length || *length < 0) return std::nullopt;
  TextOutline outline;
  outline.length = *length;
  if (const auto caret = integerPropertyIn(replies[1]); caret && *caret >= 0) {
    outline.caret = *caret;
  }
  outline.selectionCount = integerIn(replies[2]).value_or(0);
  const auto selection = integersIn(replies[3]);
  if (outline.selectionCount > 0 && selection) {
    const auto [begin, end] = std::minmax(selection->first, selection->second);
    outline.selection = {begin, end};
  }
  return outline;
}

AtspiCall textCall(const ObjectReference& object, std::int64_t begin, std::int64_t end) {
  return {object,
          atspi::text,
          "GetText",
          {QVariant(static_cast<int>(begin)), QVariant(static_cast<int>(end))}};
}

std::optional<TextPiece> readPieces(AtspiBus& bus, const ObjectReference& object,
                                    std::int64_t longest, TextManner manner) {
  const auto outline = outlineIn(bus.ask(outlineCalls(object)));
  if (!outline || outline->length > longest) return std::nullopt;
  const auto text = textIn(bus.askOne(textCall(object, 0, outline->length)));
  if (!text || text->size() > static_cast<std::size_t>(longest) * 4) return std::nullopt;
  TextPiece root;
  root.object = object;
  fill(root, *text, *outline, manner);
  std::vector<TextPiece*> level = {&root};
  for (int depth = 0; depth < deepestPiece; ++depth) {
    std::erase_if(level, [](const TextPiece* piece) { return !hasMarks(piece); });
    if (level.empty()) break;
    level = readLevel(bus, level, manner);
  }
  return root;
}

}  // namespace quillo::linux_host
