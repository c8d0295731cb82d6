// The clipboard of a real X server.
#include "contracts/linux/linux_selection_program.h"
#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/pasteboard_contract.h"
#include "hosts/linux/x11/clipboard/x11_clipboard.h"

namespace quillo::contracts {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsSupersetOf;
using testing::Not;

std::string targetOf(std::string_view pasteboardType) {
  return pasteboardType == pasteboardTypeString ? "UTF8_STRING" : std::string(pasteboardType);
}

class LinuxPasteboard final : public LinuxX11Host<PasteboardHost> {
 public:
  Pasteboard& pasteboard() override { return desktop().pasteboard(); }
  void copyElsewhere(PasteboardItem item, OwnerManner manner) override {
    std::vector<RawRepresentation> content;
    for (auto& [type, bytes] : item.representations) {
      content.push_back({targetOf(type), targetOf(type), 8, std::move(bytes)});
    }
    copyRaw(std::move(content), manner);
  }
  void copyRaw(std::vector<RawRepresentation> content, OwnerManner manner = OwnerManner::prompt) {
    // The new owner is there before the old one goes, or the old one's end is a change, too.
    auto owner = std::make_unique<SelectionOwner>(std::move(content), manner);
    std::swap(owner_, owner);
  }
  void endOtherProgram() override { owner_.reset(); }
  SelectionOwner& owner() { return *owner_; }
  bool isMarkedAsPassing() override {
    const auto hint = readSelection("x-kde-passwordManagerHint");
    return hint && hint->bytes == "secret";
  }
  std::optional<Bytes> readElsewhere(std::string_view type) override {
    auto form = readSelection(targetOf(type));
    if (!form) return std::nullopt;
    return std::move(form->bytes);
  }

 private:
  std::unique_ptr<SelectionOwner> owner_;
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, PasteboardContract, hostedBy<LinuxPasteboard>());

// --- What only X11 has ---

class X11PasteboardTest : public testing::Test {
 protected:
  Pasteboard& pasteboard() { return host_.pasteboard(); }
  // Another program copies, and this one has noticed it.
  void copyRaw(std::vector<RawRepresentation> content, OwnerManner manner = OwnerManner::prompt) {
    const std::int64_t before = pasteboard().changeCount();
    host_.copyRaw(std::move(content), manner);
    ASSERT_TRUE(host_.runUntil([&] { return pasteboard().changeCount() != before; },
                               std::chrono::seconds(10)));
  }
  std::vector<PasteboardItem> items() {
    const auto now = pasteboard().contents();
    if (now->itemCount() == 0) return {};
    PasteboardItem item;
    for (const std::string& type : now->types(0)) {
      if (auto data = now->data(0, type)) item.representations.emplace_back(type, *data);
    }
    return {item};
  }

  LinuxPasteboard host_;
};

TEST_F(X11PasteboardTest, ForeignTargetsComeBackWithTheirTypeFormatAndBytes) {
  const Bytes words("\x01\0\0\0\xff\xff\xff\x7f", 8);
  const std::vector<RawRepresentation> content = {
      {"UTF8_STRING", "UTF8_STRING", 8, "x"},
      {"TEXT", "UTF8_STRING", 8, "x"},
      {"STRING", "STRING", 8, "x\xe4"},
      {"text/plain;charset=utf-8", "text/plain;charset=utf-8", 8, "x"},
      {"application/x-words", "INTEGER", 32, words},
      {"application/x-halves", "application/x-halves", 16, words},
      {"application/x-object;name=\"A [b/8]\"", "embed source", 8, Bytes(400'000, '\1')},
      {"_EMPTY", "_EMPTY", 8, ""}};
  copyRaw(content);
  const auto saved = items();
  ASSERT_EQ(saved.size(), 1u);
  EXPECT_EQ(saved[0].representations.size(), content.size());

  pasteboard().clearContents();
  ASSERT_TRUE(pasteboard().writeItems(saved));
  for (const RawRepresentation& form : content) {
    EXPECT_TRUE(readSelection(form.target) == form) << form.target;
  }
  std::vector<std::string> targets = {"TARGETS", "TIMESTAMP", "MULTIPLE"};
  for (const RawRepresentation& form : content) targets.push_back(form.target);
  EXPECT_THAT(readSelectionTargets(), ElementsAreArray(targets));
}

TEST_F(X11PasteboardTest, OwnTextIsOfferedInEveryForm) {
  pasteboard().clearContents();
  ASSERT_TRUE(pasteboard().setString("né 🎙"));
  EXPECT_THAT(readSelectionTargets(),
              IsSupersetOf({"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING",
                            "TEXT", "TARGETS", "TIMESTAMP", "MULTIPLE"}));
  EXPECT_EQ(readSelection("text/plain;charset=utf-8")->bytes, "né 🎙");
  EXPECT_EQ(readSelection("STRING"), (RawRepresentation{"STRING", "STRING", 8, "n\xe9 ?"}));
  EXPECT_EQ(readSelection("TEXT")->type, "UTF8_STRING");
  EXPECT_EQ(readSelection("STRING", "CLIPBOARD", NamedProperty::none), readSelection("STRING"));
  EXPECT_FALSE(readSelection("image/png"));
  EXPECT_THAT(servedTogether({"STRING", "image/png", "MULTIPLE", "UTF8_STRING"}),
              ElementsAre("STRING", "UTF8_STRING"));
  EXPECT_FALSE(readSelection("UTF8_STRING", "PRIMARY"));
}

TEST_F(X11PasteboardTest, TextThatComesInOtherFormsOnlyIsStillText) {
  copyRaw({{"STRING", "STRING", 8, "caf\xe9"}, {"STRING", "STRING", 8, "caf\xe9"}});
  EXPECT_EQ(pasteboard().string(), "café");
  EXPECT_EQ(items().front().representations.front(),
            (std::pair<std::string, Bytes>(pasteboardTypeString, "café")));
  EXPECT_EQ(items().front().representations.size(), 2u)
      << "a form that is named twice is read once";
  copyRaw({{"text/plain;charset=utf-8", "text/plain;charset=utf-8", 8, "naïve"}});
  EXPECT_EQ(pasteboard().string(), "naïve");
  copyRaw({{"image/png", "image/png", 8, "not text"}});
  EXPECT_FALSE(pasteboard().string());
  copyRaw({{"UTF8_STRING", "UTF8_STRING", 8, "text"}, {"image/png", "image/png", 8, "picture"}});
  EXPECT_EQ(pasteboard().string(), "text");
  EXPECT_THAT(host_.owner().requestedTargets(), Not(Contains("image/png")));
}

TEST_F(X11PasteboardTest, AnOwnerWithManyFormsThatIsTooSlowIsNotReadInPart) {
  copyRaw({{"UTF8_STRING", "UTF8_STRING", 8, "text"},
           {"text/html", "text/html", 8, "html"},
           {"image/png", "image/png", 8, "picture"},
           {"image/bmp", "image/bmp", 8, "picture"},
           {"image/tiff", "image/tiff", 8, "picture"}},
          OwnerManner::slow);
  const MonotonicTime begun = host_.mainThread().now();
  const auto now = pasteboard().contents();
  const Duration taken = host_.mainThread().now() - begun;
  // Whoever allows 0.8 seconds sees that they are over, and still has a type to look at.
  EXPECT_GE(taken, Duration(std::chrono::milliseconds(800)));
  EXPECT_LT(taken, Duration(std::chrono::milliseconds(1500)));
  ASSERT_EQ(now->itemCount(), 1u);
  EXPECT_EQ(now->types(0).size(), 5u);
  EXPECT_EQ(now->data(0, pasteboardTypeString), "text");
  EXPECT_FALSE(now->data(0, "image/tiff"));
}

TEST_F(X11PasteboardTest, AnOwnerThatEndsOrIsReplacedMidwayEndsTheReadingOfIt) {
  copyRaw({{"UTF8_STRING", "UTF8_STRING", 8, "hung"}}, OwnerManner::hung);
  const MonotonicTime begun = host_.mainThread().now();
  std::thread other([this] {
    while (host_.owner().requestedTargets().empty()) std::this_thread::yield();
    host_.copyRaw({{"UTF8_STRING", "UTF8_STRING", 8, "new"}});
  });
  EXPECT_EQ(items().front().representations.front().second, "new");
  other.join();

  copyRaw({{"UTF8_STRING", "UTF8_STRING", 8, "hung"}}, OwnerManner::hung);
  other = std::thread([this] {
    while (host_.owner().requestedTargets().empty()) std::this_thread::yield();
    host_.endOtherProgram();
  });
  const std::int64_t before = pasteboard().changeCount();
  EXPECT_TRUE(items().empty());
  other.join();
  EXPECT_EQ(pasteboard().changeCount(), before + 1);
  EXPECT_LT(host_.mainThread().now() - begun, Duration(std::chrono::milliseconds(1600)));
}

TEST_F(X11PasteboardTest, TheClipboardManagerGetsWhatThisProgramLeaves) {
  auto clipboard = linux_host::X11Clipboard::open();
  ASSERT_TRUE(clipboard);
  clipboard->takeOwnership();
  ASSERT_TRUE(clipboard->setContent(
      {{"UTF8_STRING", "UTF8_STRING", 8, "left"}, {"text/html", "text/html", 8, "<b>left</b>"}}));
  SelectionOwner manager({}, OwnerManner::prompt, "CLIPBOARD_MANAGER");
  clipboard.reset();
  EXPECT_THAT(manager.saved(),
              ElementsAre(RawRepresentation{"UTF8_STRING", "UTF8_STRING", 8, "left"},
                          RawRepresentation{"text/html", "text/html", 8, "<b>left</b>"}));
}

}  // namespace
}  // namespace quillo::contracts
