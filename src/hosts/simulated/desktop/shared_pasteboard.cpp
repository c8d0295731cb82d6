#include "hosts/simulated/desktop/shared_pasteboard.h"

namespace quillo::simulated {

// The offer of one moment. Its data can be read for as long as its owner has the clipboard.
class SharedPasteboard::Contents final : public PasteboardContents {
 public:
  Contents(const SharedPasteboard& pasteboard, std::shared_ptr<Offer> offer)
      : pasteboard_(pasteboard), offer_(std::move(offer)) {}

  std::size_t itemCount() const override { return offer_->items.size(); }

  std::vector<std::string> types(std::size_t item) const override {
    std::vector<std::string> types;
    for (const OfferedData& data : offer_->items.at(item)) types.push_back(data.type);
    return types;
  }

  Result<Bytes, PasteboardFailure> data(std::size_t item, std::string_view type) const override {
    for (const OfferedData& data : offer_->items.at(item)) {
      if (data.type == type) return ask(data);
    }
    return PasteboardFailure::absent;
  }

 private:
  Result<Bytes, PasteboardFailure> ask(const OfferedData& data) const {
    if (!isObtainable(data)) return PasteboardFailure::absent;
    const Duration answerTime = offer_->perAnswer + data.makingTime;
    if (offer_->isHung || answerTime > readLimit) {
      pasteboard_.timeline_.block(readLimit);
      return PasteboardFailure::noAnswer;
    }
    pasteboard_.timeline_.block(answerTime);
    // The owner may have gone meanwhile.
    if (!isObtainable(data)) return PasteboardFailure::absent;
    return data.bytes;
  }

  bool isObtainable(const OfferedData& data) const {
    return offer_ == pasteboard_.offer_ && !(data.isPromised && offer_->isOwnerGone);
  }

  const SharedPasteboard& pasteboard_;
  std::shared_ptr<Offer> offer_;
};

SharedPasteboard::SharedPasteboard(Timeline& timeline)
    : timeline_(timeline), offer_(std::make_shared<Offer>()) {}

void SharedPasteboard::takeOver(std::shared_ptr<Offer> offer) {
  offer_ = std::move(offer);
  ++changeCount_;
}

std::unique_ptr<PasteboardContents> SharedPasteboard::contents() const {
  return std::make_unique<Contents>(*this, offer_);
}

void SharedPasteboard::clearContents() {
  auto offer = std::make_shared<Offer>();
  offer->isOurs = true;
  takeOver(std::move(offer));
}

Result<void, PasteboardFailure> SharedPasteboard::writeItems(
    const std::vector<PasteboardItem>& items) {
  if (!offer_->isOurs) return PasteboardFailure::notOwner;
  for (const PasteboardItem& item : items) {
    OfferedItem offered;
    for (const auto& [type, bytes] : item.representations) offered.push_back({type, bytes});
    if (item.use == ClipboardUse::lent) offer_->use = ClipboardUse::lent;
    offer_->items.push_back(std::move(offered));
  }
  return {};
}

void SharedPasteboard::copy(std::string_view text, std::int32_t process) {
  copyItems({{{pasteboardTypeString, Bytes(text)}}}, process);
}

void SharedPasteboard::copyItems(std::vector<OfferedItem> items, std::int32_t process) {
  auto offer = std::make_shared<Offer>();
  offer->items = std::move(items);
  offer->process = process;
  takeOver(std::move(offer));
}

void SharedPasteboard::processEnded(std::int32_t process) {
  if (!offer_->isOurs && offer_->process == process) loseOwner();
}

std::optional<SharedPasteboard::OfferedText> SharedPasteboard::offeredText() const {
  for (const OfferedItem& item : offer_->items) {
    for (const OfferedData& data : item) {
      if (data.type != pasteboardTypeString) continue;
      if (offer_->isHung || (data.isPromised && offer_->isOwnerGone)) return std::nullopt;
      return OfferedText{data.bytes, offer_->perAnswer + data.makingTime};
    }
  }
  return std::nullopt;
}

std::optional<std::string> SharedPasteboard::text() const {
  const auto offered = offeredText();
  return offered ? std::optional(offered->text) : std::nullopt;
}

std::vector<PasteboardItem> SharedPasteboard::items() const {
  std::vector<PasteboardItem> items;
  for (const OfferedItem& offered : offer_->items) {
    PasteboardItem item;
    for (const OfferedData& data : offered)
      item.representations.emplace_back(data.type, data.bytes);
    items.push_back(std::move(item));
  }
  return items;
}

}  // namespace quillo::simulated
