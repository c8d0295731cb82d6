#include "insertion/pasteboard_snapshot.h"

namespace quillo {
namespace {

class Allowance {
 public:
  explicit Allowance(const MainThread& mainThread)
      : mainThread_(mainThread), begin_(mainThread.now()) {}

  bool isExhausted() const {
    return bytes_ > snapshotByteLimit || mainThread_.now() - begin_ >= snapshotTimeLimit;
  }
  void spend(std::size_t bytes) { bytes_ += bytes; }

 private:
  const MainThread& mainThread_;
  MonotonicTime begin_;
  std::uint64_t bytes_ = 0;
};

std::optional<PasteboardItem> copyItem(const PasteboardContents& contents, std::size_t index,
                                       Allowance& allowance) {
  PasteboardItem copy;
  for (std::string& type : contents.types(index)) {
    if (allowance.isExhausted()) return std::nullopt;
    auto data = contents.data(index, type);
    if (!data) continue;
    allowance.spend(data->size());
    copy.representations.emplace_back(std::move(type), std::move(*data));
  }
  return copy;
}

}  // namespace

std::optional<PasteboardSnapshot> snapshotPasteboard(const Pasteboard& pasteboard,
                                                     const MainThread& mainThread) {
  Allowance allowance(mainThread);
  const auto contents = pasteboard.contents();
  PasteboardSnapshot snapshot;
  for (std::size_t index = 0; index < contents->itemCount(); ++index) {
    auto copy = copyItem(*contents, index, allowance);
    if (!copy) return std::nullopt;
    if (!copy->representations.empty()) snapshot.push_back(std::move(*copy));
  }
  return snapshot;
}

void restorePasteboard(Pasteboard& pasteboard, const PasteboardSnapshot& snapshot) {
  pasteboard.clearContents();
  if (!snapshot.empty()) pasteboard.writeItems(snapshot);
}

}  // namespace quillo
