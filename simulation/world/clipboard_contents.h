// What lies on the clipboard, as far as anybody can tell two clipboards apart by it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/simulated/desktop/shared_pasteboard.h"
#include "platform/pasteboard.h"

namespace quillo::sim {

struct ClipboardContents {
  std::vector<std::string> types;   // of all items, in their order
  std::optional<std::string> text;  // the first plain one

  friend bool operator==(const ClipboardContents&, const ClipboardContents&) = default;
};

ClipboardContents contentsOf(const std::vector<PasteboardItem>& items);
ClipboardContents contentsOf(const std::vector<simulated::OfferedItem>& items);

}  // namespace quillo::sim
