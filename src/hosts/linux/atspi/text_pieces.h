// Reads a field's text with all that stands in it.
#pragma once

#include <QDBusMessage>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/flat_text.h"

namespace quillo::linux_host {

// What an object tells of its text beside the text, in its own units.
struct TextOutline {
  std::int64_t length = 0;
  std::optional<std::int64_t> caret;
  int selectionCount = 0;
  std::optional<std::pair<std::int64_t, std::int64_t>> selection;  // begin, end
};

inline constexpr std::size_t outlineCallCount = 4;
std::vector<AtspiCall> outlineCalls(const ObjectReference& object);
// Nothing when the object has no text.
std::optional<TextOutline> outlineIn(std::span<const QDBusMessage> replies);

AtspiCall textCall(const ObjectReference& object, std::int64_t begin, std::int64_t end);

// What is peculiar to a toolkit's texts.
struct TextManner {
  OffsetUnit usual = OffsetUnit::codePoints;
  // Counts the ends of a selection in code points and takes the result for UTF-16 units that it
  // counts once more: behind an emoji they fall short by one. Its caret does not.
  bool countsSelectionsTwice = false;
};

// Nothing when the object has no text, does not answer, or claims more than `longest` units.
std::optional<TextPiece> readPieces(AtspiBus& bus, const ObjectReference& object,
                                    std::int64_t longest, TextManner manner);

}  // namespace quillo::linux_host
