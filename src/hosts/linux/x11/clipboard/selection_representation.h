// One form of what a selection holds (ICCCM, section 2.6.2).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "platform/pasteboard.h"

namespace quillo::linux_host {

// What a requestor asks for by `target` comes as a property of `type` in units of `format` bits.
// Atoms stand by name: an application may ask for TEXT and receive UTF8_STRING.
struct SelectionRepresentation {
  std::string target;
  std::string type;
  int format = 8;
  Bytes bytes;
};

using SelectionContent = std::vector<SelectionRepresentation>;

// The pasteboard's name for the form: UTF-8 text has the pasteboard's own, every other target
// keeps its name, followed by type and format in brackets where these say more than the target:
// "TEXT [UTF8_STRING/8]".
std::string pasteboardType(const SelectionRepresentation& representation);
// The form without its bytes; the other way round.
SelectionRepresentation representationOf(std::string_view pasteboardType);

// Targets that are about the transfer and not about the content.
bool isContentTarget(std::string_view target);

using PasteboardRepresentations = std::vector<std::pair<std::string, Bytes>>;

// In the pasteboard's names and order of preference. Plain text that comes only in other forms is
// there as the pasteboard's plain text as well.
PasteboardRepresentations pasteboardRepresentations(SelectionContent content);
// What this program offers for the item. Text alone is offered in every form that programs ask for;
// what is lent is marked so that clipboard managers do not keep it.
SelectionContent selectionContent(const PasteboardItem& item);

// The content's best plain text.
std::optional<std::string> plainText(const SelectionContent& content);
// Targets of plain text, best first.
std::vector<std::string> plainTextTargets();

}  // namespace quillo::linux_host
