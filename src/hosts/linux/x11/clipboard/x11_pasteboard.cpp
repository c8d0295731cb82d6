#include "hosts/linux/x11/clipboard/x11_pasteboard.h"

#include <chrono>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr Duration readingLimit = std::chrono::milliseconds(800);

class ReadContents final : public PasteboardContents {
 public:
  explicit ReadContents(ClipboardReading reading)
      : representations_(pasteboardRepresentations(std::move(reading.content))) {
    for (const std::string& target : reading.missingTargets) {
      missing_.push_back(pasteboardType(representationOf(target)));
    }
    if (reading.outcome == ClipboardReading::Outcome::timedOut && representations_.empty() &&
        missing_.empty()) {
      missing_.push_back(pasteboardTypeString);
    }
  }

  std::size_t itemCount() const override {
    return representations_.empty() && missing_.empty() ? 0 : 1;
  }
  std::vector<std::string> types(std::size_t item) const override {
    std::vector<std::string> result;
    if (item != 0) return result;
    for (const auto& [type, bytes] : representations_) result.push_back(type);
    result.insert(result.end(), missing_.begin(), missing_.end());
    return result;
  }
  std::optional<Bytes> data(std::size_t item, std::string_view type) const override {
    if (item != 0) return std::nullopt;
    for (const auto& [name, bytes] : representations_) {
      if (name == type) return bytes;
    }
    return std::nullopt;
  }

 private:
  PasteboardRepresentations representations_;
  std::vector<std::string> missing_;
};

}  // namespace

std::unique_ptr<PasteboardContents> X11Pasteboard::contents() const {
  return std::make_unique<ReadContents>(
      clipboard_.read(SelectionReader::Wanted::everything, readingLimit));
}

bool X11Pasteboard::writeItems(const std::vector<PasteboardItem>& items) {
  return clipboard_.setContent(items.empty() ? SelectionContent()
                                             : selectionContent(items.front().representations));
}

std::optional<std::string> X11Pasteboard::string() const {
  return plainText(clipboard_.read(SelectionReader::Wanted::plainText, readingLimit).content);
}

}  // namespace quillo::linux_host
