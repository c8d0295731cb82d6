#include "simulation/world/clipboard_contents.h"

namespace quillo::sim {
namespace {

void add(ClipboardContents& contents, const std::string& type, const Bytes& bytes) {
  contents.types.push_back(type);
  if (type == pasteboardTypeString && !contents.text) contents.text = bytes;
}

}  // namespace

ClipboardContents contentsOf(const std::vector<PasteboardItem>& items) {
  ClipboardContents contents;
  for (const PasteboardItem& item : items)
    for (const auto& [type, bytes] : item.representations) add(contents, type, bytes);
  return contents;
}

ClipboardContents contentsOf(const std::vector<simulated::OfferedItem>& items) {
  ClipboardContents contents;
  for (const simulated::OfferedItem& item : items)
    for (const simulated::OfferedData& data : item) add(contents, data.type, data.bytes);
  return contents;
}

}  // namespace quillo::sim
