// The clipboard that all programs of the desktop share.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/simulated/time/timeline.h"
#include "platform/pasteboard.h"

namespace quillo::simulated {

// One kind of data that a program offers. Promised data are made when somebody asks, which takes
// `makingTime`, and go with the program that promised them.
struct OfferedData {
  std::string type;
  Bytes bytes{};
  bool isPromised = false;
  Duration makingTime{};
};
using OfferedItem = std::vector<OfferedData>;

class SharedPasteboard final : public Pasteboard {
 public:
  explicit SharedPasteboard(Timeline& timeline);

  std::int64_t changeCount() const override { return changeCount_; }
  std::unique_ptr<PasteboardContents> contents() const override;
  void clearContents() override;
  Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) override;

  // For other programs on the desktop: the plain text, and how long its owner takes to give it.
  struct OfferedText {
    Bytes text;
    Duration makingTime{};
  };
  std::optional<OfferedText> offeredText() const;

  // --- Driver ---

  // Another program copies; its process may be named, so that its end takes its promises along.
  void copy(std::string_view text, std::int32_t process = 0);
  void copyItems(std::vector<OfferedItem> items, std::int32_t process = 0);
  // From now on each answer of the owner takes this long, whether promised or not.
  void slowOwner(Duration perAnswer) { offer_->perAnswer = perAnswer; }
  // The owner still stands but never answers: a read blocks for the host's limit.
  void hangOwner() { offer_->isHung = true; }
  // The owner ends, and what it promised with it.
  void loseOwner() { offer_->isOwnerGone = true; }
  void processEnded(std::int32_t process);

  // The longest that one read waits for an owner.
  static constexpr Duration readLimit = std::chrono::seconds(2);

  // What lies there now, without any time passing.
  std::optional<std::string> text() const;
  std::vector<PasteboardItem> items() const;
  const std::vector<OfferedItem>& offered() const { return offer_->items; }
  bool isOwnedByProgram() const { return offer_->isOurs; }
  // What this program has there is not for clipboard managers to keep.
  bool isLent() const { return offer_->use == ClipboardUse::lent; }

 private:
  struct Offer {
    std::vector<OfferedItem> items;
    bool isOurs = false;
    ClipboardUse use = ClipboardUse::kept;
    std::int32_t process = 0;
    Duration perAnswer{};
    bool isHung = false;
    bool isOwnerGone = false;
  };
  class Contents;

  void takeOver(std::shared_ptr<Offer> offer);

  Timeline& timeline_;
  std::shared_ptr<Offer> offer_;
  std::int64_t changeCount_ = 1;
};

}  // namespace quillo::simulated
