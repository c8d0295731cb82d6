#include "hosts/linux/x11/clipboard/x11_pasteboard.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <utility>

namespace quillo::linux_host {
namespace {

using namespace std::chrono_literals;

// A caller that allows 0.8 seconds has some left when the first of them is over, and none after the
// second.
constexpr ReadingLimits everythingLimits{.allForms = 700ms, .someForms = 800ms, .lastForm = 2s};
constexpr ReadingLimits textLimits{.allForms = 2s, .someForms = 2s, .lastForm = 2s};
// The clipboard's thread keeps the limits, unless the X server does not answer it.
constexpr Duration clipboardPatience = 3s;

class ReadContents final : public PasteboardContents {
 public:
  explicit ReadContents(ClipboardReading reading)
      : representations_(pasteboardRepresentations(std::move(reading.content))),
        lastForm_(std::move(reading.lastForm)) {
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
  Result<Bytes, PasteboardFailure> data(std::size_t item, std::string_view type) const override {
    if (item != 0) return PasteboardFailure::absent;
    for (const auto& [name, bytes] : representations_) {
      if (name == type) return bytes;
    }
    const bool isMissing = std::ranges::find(missing_, type) != missing_.end();
    return isMissing ? lateData() : PasteboardFailure::absent;
  }

 private:
  Result<Bytes, PasteboardFailure> lateData() const {
    if (lastForm_.valid() && lastForm_.wait_for(clipboardPatience) == std::future_status::ready) {
      if (auto form = lastForm_.get()) lastData_ = std::move(form->bytes);
    }
    if (!lastData_) return PasteboardFailure::noAnswer;
    return *lastData_;
  }

  PasteboardRepresentations representations_;
  std::vector<std::string> missing_;
  mutable std::future<std::optional<SelectionRepresentation>> lastForm_;
  mutable std::optional<Bytes> lastData_;
};

}  // namespace

std::unique_ptr<PasteboardContents> X11Pasteboard::contents() const {
  return std::make_unique<ReadContents>(
      clipboard_.read(SelectionReader::Wanted::everything, everythingLimits));
}

Result<void, PasteboardFailure> X11Pasteboard::writeItems(
    const std::vector<PasteboardItem>& items) {
  const bool isOurs =
      clipboard_.setContent(items.empty() ? SelectionContent() : selectionContent(items.front()));
  if (!isOurs) return PasteboardFailure::notOwner;
  return {};
}

Result<std::string, PasteboardFailure> X11Pasteboard::string() const {
  const auto reading = clipboard_.read(SelectionReader::Wanted::plainText, textLimits);
  if (auto text = plainText(reading.content)) return *std::move(text);
  return reading.outcome == ClipboardReading::Outcome::timedOut ? PasteboardFailure::noAnswer
                                                                : PasteboardFailure::absent;
}

std::optional<std::string> X11Pasteboard::selectedText() const {
  return plainText(
      clipboard_
          .read(SelectionReader::Wanted::plainText, textLimits, X11Clipboard::Selection::primary)
          .content);
}

}  // namespace quillo::linux_host
