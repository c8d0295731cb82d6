#include "insertion/clipboard_capture.h"

#include "insertion/command_shortcut.h"
#include "insertion/insertion_test_fixture.h"
#include "insertion/pasteboard_snapshot.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class ClipboardCaptureTest : public InsertionTest {
 protected:
  ClipboardCaptureTest() {
    editor_.editor().setText("some words");
    editor_.editor().select("words");
    editor_.setReactionTime(10ms);
    pasteboard_.copy("mine");
  }

  void startCapture() {
    start(desktop_.mainThread(),
          capture_.captureViaClipboard([] { return true; },
                                       [this](std::optional<std::string> text) {
                                         EXPECT_EQ(gate_.isBusy(), expectGateHeld_);
                                         captured_.push_back(text.value_or("nothing"));
                                       }));
  }

  bool expectGateHeld_ = true;
  std::vector<std::string> captured_;
};

TEST_F(ClipboardCaptureTest, CopiesTheSelectionWithMarkedKeysAndGivesTheClipboardBack) {
  startCapture();
  EXPECT_EQ(timeUntilIdle(), 25ms + 40ms);
  EXPECT_THAT(captured_, ElementsAre("words"));
  EXPECT_EQ(pasteboard_.text(), "mine");
  EXPECT_EQ(keyboard_.posted().size(), 4u);
  EXPECT_THAT(keyboard_.posted(),
              Each(Field(&simulated::SimulatedKeyboard::Posted::userData, syntheticCopyMarker)));
  EXPECT_THAT(desktop_.log().lines(),
              ElementsAre("[bubble] clipboard selection captured length=5"));
}

TEST_F(ClipboardCaptureTest, GivesUpAfterTheLastLook) {
  editor_.setIgnoresCopy(true);
  const auto changeCount = pasteboard_.changeCount();
  startCapture();
  EXPECT_EQ(timeUntilIdle(), 875ms);
  EXPECT_EQ(pasteboard_.changeCount(), changeCount + 1);

  // An answer that is no plain text is told apart by nothing.
  startCapture();
  desktop_.after(60ms, [&] { pasteboard_.copyItems({{{"public.png", "x"}}}); });
  EXPECT_EQ(timeUntilIdle(), 65ms);
  EXPECT_THAT(captured_, ElementsAre("nothing", "nothing"));
  EXPECT_EQ(pasteboard_.text(), "mine");
  EXPECT_THAT(desktop_.log().lines(), Each("[bubble] clipboard selection capture timed out"));
}

TEST_F(ClipboardCaptureTest, NeverCostsTheUserAKeystrokeOrAClipboard) {
  keyboard_.press(Key::rightCommand);
  expectGateHeld_ = false;
  startCapture();
  desktop_.runUntilIdle();
  keyboard_.release(Key::rightCommand);
  expectGateHeld_ = true;

  pasteboard_.copyItems({{{"a", "x"}, {"b", "x"}, {"c", "x"}}});
  pasteboard_.slowOwner(300ms);
  startCapture();
  desktop_.after(500ms, [&] { keyboard_.press(Key::command); });
  desktop_.runUntilIdle();
  keyboard_.release(Key::command);

  pasteboard_.slowOwner(400ms);
  startCapture();
  desktop_.runUntilIdle();

  EXPECT_THAT(captured_, ElementsAre("nothing", "nothing", "nothing"));
  EXPECT_THAT(keyboard_.posted(), IsEmpty());
  EXPECT_FALSE(pasteboard_.isOwnedByProgram());
  EXPECT_THAT(
      desktop_.log().lines(),
      ElementsAre("[bubble] user is holding ⌘ (their own copy) — skipping synthetic ⌘C so we don't "
                  "drop their modifier",
                  "[bubble] ⌘ went down during snapshot — skipping synthetic ⌘C",
                  "[bubble] clipboard too large to snapshot safely — skipping capture to protect "
                  "the user's copy"));
}

TEST_F(ClipboardCaptureTest, BorrowersComeOneAfterAnother) {
  startCapture();
  startCapture();
  startInsert("new");
  desktop_.runUntilIdle();
  EXPECT_THAT(captured_, ElementsAre("words", "words"));
  EXPECT_EQ(editor_.editor().text(), "some new");
  EXPECT_EQ(pasteboard_.text(), "mine");
}

}  // namespace
}  // namespace quillo
