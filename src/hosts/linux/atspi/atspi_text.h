// The text of other applications' fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/dbus_values.h"
#include "hosts/linux/atspi/flat_text.h"
#include "hosts/linux/atspi/text_pieces.h"
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
  // Browsers of the Chromium family first lay their text out for others when its place is asked
  // for, and answer with nothing until that is done. Asks, and waits for nothing.
  void prepareBounds(const ObjectReference& object);
  // True when the application accepted it.
  bool select(const ObjectReference& object, TextRange range);

 private:
  std::optional<TextPiece> read(const ObjectReference& object);
  TextManner mannerOf(const ObjectReference& object);
  // The rectangle around all parts, where the application tells one.
  std::optional<PixelRect> extents(const std::vector<TextPlace>& parts);
  std::optional<PixelRect> caretBounds(const TextPlace& place);
  bool addSelectionUnanswered(const ObjectReference& object, std::int32_t begin, std::int32_t end);

  AtspiBus& bus_;
  AtspiApplications& applications_;
};

}  // namespace quillo::linux_host
