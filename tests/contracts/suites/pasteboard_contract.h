// What every desktop's pasteboard keeps.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "contracts/support/contract_host.h"
#include "contracts/support/owner_manner.h"
#include "platform/pasteboard.h"

namespace quillo::contracts {

class PasteboardHost : public ContractHost {
 public:
  virtual Pasteboard& pasteboard() = 0;

  // Another program copies one item.
  virtual void copyElsewhere(PasteboardItem item, OwnerManner manner = OwnerManner::prompt) = 0;
  // The program that copied last ends.
  virtual void endOtherProgram() = 0;
  // What another program reads.
  virtual std::optional<Bytes> readElsewhere(std::string_view type) = 0;
  // A clipboard manager is asked to leave out what this program has there.
  virtual bool isMarkedAsPassing() = 0;
};

class PasteboardContract : public PortContract<PasteboardHost> {
 protected:
  Pasteboard& pasteboard() { return host().pasteboard(); }

  // A copy of all that the clipboard holds, as the system makes it: nothing when the time limit has
  // passed before a type is read.
  std::optional<std::vector<PasteboardItem>> snapshot() {
    const MonotonicTime begun = host().mainThread().now();
    const auto now = pasteboard().contents();
    std::vector<PasteboardItem> items;
    for (std::size_t item = 0; item < now->itemCount(); ++item) {
      PasteboardItem copy;
      for (const std::string& type : now->types(item)) {
        if (host().mainThread().now() - begun >= std::chrono::milliseconds(800))
          return std::nullopt;
        if (auto data = now->data(item, type)) copy.representations.emplace_back(type, *data);
      }
      if (!copy.representations.empty()) items.push_back(copy);
    }
    return items;
  }
  bool runUntilChanged(std::int64_t from) {
    return host().runUntil([this, from] { return pasteboard().changeCount() != from; });
  }
  // Another program copies, and this one has noticed it.
  void copyAndSee(PasteboardItem item, OwnerManner manner = OwnerManner::prompt) {
    const std::int64_t before = pasteboard().changeCount();
    host().copyElsewhere(std::move(item), manner);
    ASSERT_TRUE(runUntilChanged(before));
  }

  static PasteboardItem textItem(std::string_view text) {
    return {{{pasteboardTypeString, Bytes(text)}}};
  }
  // Bytes of every value, so that nothing takes them for text.
  static Bytes picture(std::size_t size) {
    Bytes bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + (i >> 11));
    return bytes;
  }
};

TEST_P(PasteboardContract, OwnTextIsReadByOthersAndCountsAsOneChange) {
  const std::int64_t before = pasteboard().changeCount();
  pasteboard().clearContents();
  EXPECT_EQ(pasteboard().changeCount(), before + 1);
  EXPECT_EQ(pasteboard().contents()->itemCount(), 0u);
  EXPECT_EQ(pasteboard().string(), PasteboardFailure::absent);
  EXPECT_FALSE(host().readElsewhere(pasteboardTypeString)) << "cleared means empty";

  EXPECT_TRUE(pasteboard().setString("Grüße 🎙"));
  EXPECT_EQ(pasteboard().changeCount(), before + 1) << "writing is not another change";
  EXPECT_EQ(pasteboard().string(), "Grüße 🎙");
  EXPECT_EQ(host().readElsewhere(pasteboardTypeString), "Grüße 🎙");
  EXPECT_EQ(host().readElsewhere(pasteboardTypeString), "Grüße 🎙") << "any number of times";

  const std::string large(5'000'000, 'q');
  pasteboard().clearContents();
  EXPECT_TRUE(pasteboard().setString(large));
  EXPECT_EQ(host().readElsewhere(pasteboardTypeString), large);
  EXPECT_EQ(pasteboard().changeCount(), before + 2);
}

TEST_P(PasteboardContract, AnothersCopyRaisesTheCountAndEndsOwnership) {
  pasteboard().clearContents();
  ASSERT_TRUE(pasteboard().setString("mine"));
  std::int64_t before = pasteboard().changeCount();
  copyAndSee(textItem("theirs"));
  EXPECT_EQ(pasteboard().changeCount(), before + 1);
  EXPECT_EQ(pasteboard().string(), "theirs");
  EXPECT_EQ(pasteboard().setString("mine again"), PasteboardFailure::notOwner);
  EXPECT_EQ(host().readElsewhere(pasteboardTypeString), "theirs");

  copyAndSee(textItem("theirs"));
  EXPECT_EQ(pasteboard().changeCount(), before + 2) << "the same text again is a change, too";
}

TEST_P(PasteboardContract, EveryTypeComesBackAsItWas) {
  const PasteboardItem item = {{{pasteboardTypeString, "café"},
                                {"text/html", "<b>café</b>"},
                                {"image/png", picture(3'000'000)},
                                {"application/x-empty", ""},
                                {"application/x-small", picture(700)}}};
  copyAndSee(item);
  const auto saved = snapshot();
  ASSERT_TRUE(saved);
  EXPECT_THAT(*saved, testing::ElementsAre(item));

  pasteboard().clearContents();
  ASSERT_TRUE(pasteboard().setString("borrowed", ClipboardUse::lent));
  EXPECT_TRUE(host().isMarkedAsPassing());
  ASSERT_EQ(host().readElsewhere(pasteboardTypeString), "borrowed");
  EXPECT_FALSE(host().readElsewhere("text/html")) << "nothing of the old owner shows through";

  pasteboard().clearContents();
  ASSERT_TRUE(pasteboard().writeItems(*saved));
  for (const auto& [type, bytes] : item.representations) {
    EXPECT_TRUE(host().readElsewhere(type) == bytes) << type;
  }
  const auto again = snapshot();
  ASSERT_TRUE(again);
  EXPECT_THAT(*again, testing::ElementsAre(item));
  EXPECT_FALSE(host().isMarkedAsPassing()) << "it is the user's again";

  pasteboard().clearContents();
  ASSERT_TRUE(pasteboard().setString("told of"));
  EXPECT_FALSE(host().isMarkedAsPassing()) << "the user was told that it is there";
}

TEST_P(PasteboardContract, ASlowOwnerIsReadWhenItAnswersInTime) {
  copyAndSee({{{pasteboardTypeString, "slow"}, {"text/html", "<i>slow</i>"}}}, OwnerManner::slow);
  EXPECT_EQ(pasteboard().string(), "slow");
}

TEST_P(PasteboardContract, AReadUnderWayRunsToItsEndAndTheLimitIsTestedBeforeTheNext) {
  copyAndSee(textItem("late"), OwnerManner::late);
  const auto lone = snapshot();
  ASSERT_TRUE(lone);
  EXPECT_THAT(*lone, testing::ElementsAre(textItem("late")));
  EXPECT_EQ(pasteboard().string(), "late");

  copyAndSee({{{pasteboardTypeString, "late"}, {"text/html", "later"}}}, OwnerManner::late);
  EXPECT_FALSE(snapshot());
}

TEST_P(PasteboardContract, AHungOwnerCostsALimitedTimeAndIsNotTakenForAnEmptyClipboard) {
  copyAndSee({{{pasteboardTypeString, "hung"}, {"text/html", "<i>hung</i>"}}}, OwnerManner::hung);
  const MonotonicTime begun = host().mainThread().now();
  EXPECT_FALSE(snapshot());
  EXPECT_LT(host().mainThread().now() - begun, Duration(std::chrono::seconds(3)));
  EXPECT_EQ(pasteboard().string(), PasteboardFailure::noAnswer);

  // It can still be replaced.
  pasteboard().clearContents();
  EXPECT_TRUE(pasteboard().setString("mine"));
  EXPECT_EQ(host().readElsewhere(pasteboardTypeString), "mine");
}

TEST_P(PasteboardContract, WhatEndsWithItsProgramIsGone) {
  copyAndSee(textItem("fleeting"));
  host().endOtherProgram();
  ASSERT_TRUE(host().runUntil([this] { return !pasteboard().string(); }));
  const auto saved = snapshot();
  ASSERT_TRUE(saved);
  EXPECT_TRUE(saved->empty());
}

}  // namespace quillo::contracts
