// The text of other applications' fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/dbus_values.h"
#include "hosts/linux/atspi/flat_text.h"
#include "platform/accessibility.h"

namespace quillo::linux_host {

// Main thread. Nothing here is kept: text changes without a word. Never to be asked of secret
// fields, nor of documents, which may be whole books.
class AtspiText {
 public:
  // Beyond this the text is not read; the length that the application claims stands for its own.
  static constexpr std::int64_t longestText = 200'000;

  // Both outlive this.
  AtspiText(AtspiBus& bus, AtspiApplications& applications)
      : bus_(bus), applications_(applications) {}

  std::optional<std::int64_t> length(const ObjectReference& object);
  std::optional<std::string> whole(const ObjectReference& object);
  std::optional<TextRange> selection(const ObjectReference& object);
  // Empty when there is a caret and no selection.
  std::optional<std::string> selectedText(const ObjectReference& object);
  // On the screen.
  std::optional<PixelRect> bounds(const ObjectReference& object, TextRange range);
  // True when the application accepted it.
  bool select(const ObjectReference& object, TextRange range);

 private:
  std::optional<TextPiece> read(const ObjectReference& object);
  OffsetUnit usualUnit(const ObjectReference& object);
  std::optional<PixelRect> extents(const ObjectReference& object, std::int32_t begin,
                                   std::int32_t end);
  bool addSelectionUnanswered(const ObjectReference& object, std::int32_t begin, std::int32_t end);

  AtspiBus& bus_;
  AtspiApplications& applications_;
};

}  // namespace quillo::linux_host
