#include "insertion/text_insertion.h"

#include "insertion/insertion_test_fixture.h"
#include "insertion/pasteboard_snapshot.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using simulated::OfferedItem;
using simulated::SimulatedApplication;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(InsertionTest, PastesIntoTheEditorInFrontAndGivesTheClipboardBack) {
  pasteboard_.copyItems({{{"public.html", "<b>mine</b>"}, {pasteboardTypeString, "mine"}},
                         {{"public.png", std::string("\x89PNG\0", 5)}}});
  const auto before = pasteboard_.items();
  EXPECT_TRUE(desktop_.await(insertion_.insertText("Grüße 👨‍👩‍👧", std::nullopt)));

  EXPECT_EQ(desktop_.now(), MonotonicTime{355ms});
  EXPECT_EQ(editor_.editor().text(), "Grüße 👨‍👩‍👧");
  EXPECT_EQ(pasteboard_.items(), before);
  EXPECT_THAT(desktop_.log().lines(),
              ElementsAre("[insert] attempt app=Notes (com.example.notes, pid " +
                              std::to_string(editor_.process()) + ") length=7",
                          "[insert] paste shortcut posted length=7"));
  using enum KeyDirection;
  using Event = std::tuple<std::int64_t, KeyDirection, std::uint64_t, std::int64_t, Duration>;
  std::vector<Event> events;
  for (const auto& e : keyboard_.posted())
    events.emplace_back(e.keyCode, e.direction, e.flags, e.userData, e.time.sinceStart);
  EXPECT_THAT(events,
              ElementsAre(Event{55, down, 0x100000, 0, 35ms}, Event{9, down, 0x100000, 0, 35ms},
                          Event{9, up, 0x100000, 0, 55ms}, Event{55, up, 0, 0, 55ms}));
}

TEST_F(InsertionTest, PastesIntoWhateverIsInFrontAfterTheWaitForTheTarget) {
  SimulatedApplication& browser = desktop_.workspace().launch({std::nullopt, std::nullopt});
  constexpr Duration rest = 160ms + 335ms;
  const auto expectPaste = [&](SimulatedApplication::Activation activation, Duration activationTime,
                               Duration expectedWait, SimulatedApplication& receiver,
                               const char* logged) {
    SCOPED_TRACE(activationTime.count());
    desktop_.workspace().focus(browser);
    editor_.setActivation(activation);
    editor_.setActivationTime(activationTime);
    receiver.editor().setText("");
    const MonotonicTime begin = desktop_.now();
    const std::size_t logLines = desktop_.log().lines().size();
    EXPECT_TRUE(desktop_.await(insertion_.insertText("hello", editor_.identity())));
    EXPECT_EQ(desktop_.now() - begin, expectedWait + rest);
    EXPECT_EQ(receiver.editor().text(), "hello");
    EXPECT_THAT(desktop_.log().lines()[logLines + 1], testing::EndsWith(logged));
  };
  using enum SimulatedApplication::Activation;
  expectPaste(obeyed, 8ms, 50ms, editor_, ") result=true");
  expectPaste(obeyed, 1120ms, 1150ms, editor_, ") result=true");
  expectPaste(obeyed, 1300ms, 1200ms, editor_, ") result=true");
  expectPaste(ignored, 0ms, 1200ms, browser, ") result=true");
  expectPaste(refused, 0ms, 1200ms, browser, ") result=false");
}

// --- Refusals ---

TEST_F(InsertionTest, RefusesInTheOrderOfTheChecksAndLeavesTheTextToTheUser) {
  const auto expectRefusal = [&](InsertFailureReason reason,
                                 std::optional<RunningApplication> target = std::nullopt) {
    pasteboard_.copy("mine");
    EXPECT_FALSE(desktop_.await(insertion_.insertText("text", target)));
    EXPECT_EQ(insertion_.lastInsertFailure(), reason);
    EXPECT_EQ(pasteboard_.text(), "text");
    EXPECT_FALSE(pasteboard_.isLent()) << "the user is told that it is there";
    EXPECT_EQ(desktop_.log().lines().end()[-2], "[clipboard] copied string length=4");
    return desktop_.log().lines().back();
  };
  keyboard_.setSecureInput(true);
  desktop_.permissions().setAccessibilityTrusted(false);
  expectRefusal(InsertFailureReason::accessibility);
  desktop_.permissions().setAccessibilityTrusted(true);
  SimulatedApplication& shortLived =
      desktop_.workspace().launchInBackground({"com.example.gone", "Gone"});
  desktop_.workspace().quit(shortLived);
  EXPECT_EQ(expectRefusal(InsertFailureReason::invalidTarget, shortLived.identity()),
            "[insert] no valid target app; copied length=4");
  expectRefusal(InsertFailureReason::secureInput);
  keyboard_.setSecureInput(false);
  expectRefusal(InsertFailureReason::invalidTarget, desktop_.workspace().self().identity());
  desktop_.workspace().focusNothing();
  expectRefusal(InsertFailureReason::invalidTarget);
  desktop_.application().editBundle().bundleIdentifier.reset();
  editor_.describe({std::nullopt, "Notes"});
  expectRefusal(InsertFailureReason::invalidTarget, editor_.identity());
  EXPECT_THAT(keyboard_.posted(), IsEmpty());

  editor_.describe({"com.example.notes", "Notes"});
  EXPECT_TRUE(desktop_.await(insertion_.insertText("text", editor_.identity())));
  EXPECT_EQ(insertion_.lastInsertFailure(), std::nullopt);
}

// --- The user's clipboard ---

TEST_F(InsertionTest, TheLimitsOfTheSnapshotAreTestedBeforeEachRead) {
  const auto clipboardAfterInsert = [&](OfferedItem item, Duration perAnswer = 0ms) {
    pasteboard_.copyItems({std::move(item)});
    pasteboard_.slowOwner(perAnswer);
    EXPECT_TRUE(desktop_.await(insertion_.insertText("text", std::nullopt)));
    return pasteboard_.items().empty() ? "" : pasteboard_.items()[0].representations[0].first;
  };
  const Bytes atLimit(snapshotByteLimit, 'x');
  EXPECT_EQ(clipboardAfterInsert({{"huge", atLimit}, {"b", "x"}}), "huge");
  EXPECT_EQ(clipboardAfterInsert({{"huge", atLimit}, {"b", "x"}, {"c", "x"}}),
            pasteboardTypeString);
  EXPECT_EQ(clipboardAfterInsert({{"huge", atLimit + "xx"}}), "huge");

  EXPECT_EQ(clipboardAfterInsert({{"a", "x"}, {"b", "x"}, {"c", "x"}}, 399ms), "a");
  EXPECT_EQ(clipboardAfterInsert({{"a", "x"}, {"b", "x"}, {"c", "x"}}, 400ms),
            pasteboardTypeString);
  EXPECT_FALSE(pasteboard_.isLent()) << "what cannot be given back stays";
  EXPECT_EQ(clipboardAfterInsert({{"empty", ""}}), "empty");
  pasteboard_.copyItems({});
  desktop_.await(insertion_.insertText("text", std::nullopt));
  EXPECT_THAT(pasteboard_.items(), IsEmpty());
}

// --- Faults in the middle ---

TEST_F(InsertionTest, ACancelledCallerCompletesTheKeystrokeAndTheRestore) {
  pasteboard_.copy("mine");
  desktop_.workspace().launch({"com.example.browser", "Browser"});
  auto handle = start(desktop_.mainThread(), insertion_.insertText("text", editor_.identity()));
  desktop_.runFor(1ms);
  handle.cancel();
  EXPECT_TRUE(desktop_.await(handle.value()));
  EXPECT_EQ(editor_.receivedKeys().size(), 4u);  // the wait for the target was not cut short
  EXPECT_EQ(editor_.editor().text(), "text");    // and the clipboard not given back too early
  EXPECT_EQ(pasteboard_.text(), "mine");
}

TEST_F(InsertionTest, TheEndOfTheProgramLetsGoOfTheKeys) {
  startInsert("text");
  desktop_.runFor(45ms);
  EXPECT_TRUE(pasteboard_.isLent());
  EXPECT_THAT(keyboard_.postedKeysDown(), ElementsAre(9, 55));
  desktop_.abandonTasks();  // what is held is looked at in the end
}

}  // namespace
}  // namespace quillo
