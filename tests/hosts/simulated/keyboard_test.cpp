// The keyboard with its routes, the programs in front of it, and the clipboard between them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class KeyboardTest : public ::testing::Test {
 protected:
  // Everything that the program sees of a key, by route.
  void watchEveryRoute() {
    tap = desktop.eventTaps().createKeyDownTap(
        [this](const KeyEvent& event) {
          if (!event.isAutorepeat) seen.push_back("tap");
          return verdict;
        },
        [this](TapInterruption) { seen.push_back("tap interrupted"); });
    hotKey =
        desktop.hotKeys().registerHotKey(49, hot_key_modifiers::control | hot_key_modifiers::option,
                                         [this] { seen.push_back("hot key"); });
    global = desktop.eventMonitors().addGlobalMonitor(
        KeyEvent::Type::keyDown, [this](const KeyEvent&) { seen.push_back("global"); });
    local =
        desktop.eventMonitors().addLocalMonitor(KeyEvent::Type::keyDown, [this](const KeyEvent&) {
          seen.push_back("local");
          return verdict;
        });
    hid = desktop.hidKeyboards().open([this](const HIDValue& value) {
      if (value.usage < 224 && value.value != 0) seen.push_back("hid");
    });
  }
  std::vector<std::string> seenOf(const std::vector<Key>& chord) {
    seen.clear();
    desktop.keyboard().tap(chord);
    desktop.runFor(100ms);
    return seen;
  }

  SimulatedDesktop desktop;
  SimulatedKeyboard& keyboard = desktop.keyboard();
  Program& mail = desktop.workspace().launch({"com.example.mail", "Mail"});
  std::vector<std::string> seen;
  TapVerdict verdict = TapVerdict::pass;
  std::unique_ptr<EventTaps::Tap> tap;
  HotKeys::Registration hotKey;
  std::shared_ptr<void> global;
  std::shared_ptr<void> local;
  HIDKeyboards::OpenResult hid;
};

const std::vector<Key> toggleChord{Key::control, Key::option, Key::space};

TEST_F(KeyboardTest, OneKeyReachesEveryRouteThatMaySeeIt) {
  watchEveryRoute();
  EXPECT_THAT(seenOf({Key::a}), ElementsAre("hid", "tap", "global"));
  EXPECT_EQ(mail.editor().text(), "a");
  EXPECT_THAT(seenOf(toggleChord), ElementsAre("hid", "tap", "hot key"));
  EXPECT_EQ(mail.editor().text(), "a");  // a registered chord is nobody else's

  desktop.workspace().focus(desktop.workspace().self());
  EXPECT_THAT(seenOf({Key::a}), ElementsAre("hid", "tap", "local"));

  verdict = TapVerdict::swallow;
  EXPECT_THAT(seenOf(toggleChord), ElementsAre("hid", "tap"));
}

TEST_F(KeyboardTest, PermissionsAndSecureInputCloseTheRoutesThatNeedThem) {
  desktop.permissions().setListenEventAccess(false);
  watchEveryRoute();
  EXPECT_EQ(tap, nullptr);
  EXPECT_EQ(hid.result, RoutedHIDKeyboards::notPermitted);
  EXPECT_THAT(seenOf({Key::a}), ElementsAre("global"));  // accessibility is enough for it
  desktop.permissions().setAccessibilityTrusted(false);
  EXPECT_THAT(seenOf({Key::a}), IsEmpty());
  EXPECT_THAT(seenOf(toggleChord), ElementsAre("hot key"));

  desktop.permissions().setListenEventAccess(true);
  watchEveryRoute();
  keyboard.setSecureInput(true);
  mail.editor().setText("");
  EXPECT_THAT(seenOf({Key::b}), IsEmpty());
  EXPECT_TRUE(keyboard.post(9, KeyDirection::down, event_flags::command, 0));
  desktop.runFor(1s);
  EXPECT_EQ(mail.editor().text(), "b");  // the user's key arrived, the posted one did not
}

TEST_F(KeyboardTest, RoutesLoseDuplicateAndDelayIndependently) {
  watchEveryRoute();
  desktop.hidKeyboards().route().setDuplication(1.0, 3ms);
  desktop.hotKeys().route().setLoss(1.0);
  desktop.eventTaps().route().setLatency(20ms);
  EXPECT_THAT(seenOf(toggleChord), ElementsAre("hid", "hid", "tap"));
  desktop.eventTaps().route().setLoss(1.0);
  desktop.hotKeys().route().setLoss(0.0);
  // The key waits behind the doubled modifiers.
  EXPECT_THAT(seenOf(toggleChord), ElementsAre("hot key", "hid", "hid"));
}

TEST_F(KeyboardTest, ATapThatDoesNotAnswerIsSwitchedOffAndTheKeyGoesOn) {
  watchEveryRoute();
  desktop.mainThread().post([this] {
    keyboard.tap({Key::a});
    desktop.block(3s);
    seen.push_back("unblocked");
  });
  desktop.runFor(5s);
  EXPECT_EQ(mail.editor().text(), "a");
  EXPECT_THAT(seenOf({Key::b}), ElementsAre("hid", "global"));
  tap->enable();
  EXPECT_THAT(seenOf({Key::b}), ElementsAre("hid", "tap", "global"));
}

TEST_F(KeyboardTest, AHeldKeyRepeatsAsEventsButNotForHotKeysOrHardware) {
  watchEveryRoute();
  keyboard.press(Key::x);
  desktop.runFor(660ms);  // one press, then repeats after 500, 540, 580, 620 and 660 ms
  keyboard.release(Key::x);
  desktop.runFor(1s);
  EXPECT_EQ(mail.editor().text(), "xxxxxx");
  EXPECT_EQ(std::count(seen.begin(), seen.end(), "hid"), 1);

  seen.clear();
  keyboard.tap(toggleChord, 2s);
  desktop.runFor(3s);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), "hot key"), 1);
  EXPECT_EQ(mail.editor().text(), "xxxxxx");
}

TEST_F(KeyboardTest, FlagsTellModifiersLocksAndSides) {
  std::vector<std::uint64_t> flags;
  const auto monitor = desktop.eventMonitors().addGlobalMonitor(
      KeyEvent::Type::flagsChanged, [&](const KeyEvent& event) { flags.push_back(event.flags); });
  keyboard.press(Key::rightOption);
  keyboard.press(Key::capsLock);
  keyboard.release(Key::capsLock);
  keyboard.release(Key::rightOption);
  desktop.runTurns();
  EXPECT_THAT(flags, ElementsAre(0x80040u, 0x90040u, 0x90040u, 0x10000u));
  keyboard.tap({Key::a});
  EXPECT_EQ(mail.editor().text(), "A");
}

TEST_F(KeyboardTest, APostedCommandKeyUpCancelsTheOneThatTheUserHolds) {
  keyboard.press(Key::command);
  EXPECT_EQ(keyboard.modifierFlags(), event_flags::command);
  keyboard.post(55, KeyDirection::down, event_flags::command, 7);
  keyboard.post(55, KeyDirection::up, 0, 7);
  EXPECT_EQ(keyboard.modifierFlags(), 0u);
  EXPECT_THAT(keyboard.keysDown(), ElementsAre(Key::command));
  EXPECT_THAT(keyboard.postedKeysDown(), IsEmpty());
}

TEST_F(KeyboardTest, ALayoutChangesWhatKeysTypeButNotThePostedPaste) {
  keyboard.setLayout(KeyboardLayout::dvorak);
  keyboard.tap({Key::v});
  desktop.runFor(50ms);
  EXPECT_EQ(mail.editor().text(), "k");
  desktop.pasteboard().copy("!");
  keyboard.post(9, KeyDirection::down, event_flags::command, 0);
  desktop.runFor(50ms);
  EXPECT_EQ(mail.editor().text(), "k!");
}

// --- Programs and the clipboard ---

TEST_F(KeyboardTest, APasteTakesWhatTheClipboardHoldsWhenTheProgramAsks) {
  mail.setReactionTime(10ms);
  mail.editor().setText("Dear X,");
  mail.editor().select("X");
  desktop.pasteboard().copy("Ada");
  keyboard.tap({Key::command, Key::v});
  desktop.runFor(9ms);
  EXPECT_EQ(mail.editor().text(), "Dear X,");
  desktop.runFor(1ms);
  EXPECT_EQ(mail.editor().text(), "Dear Ada,");
  desktop.runFor(50ms);

  keyboard.tap({Key::command, Key::v});
  desktop.after(5ms, [&] { desktop.pasteboard().copy("too early a change"); });
  desktop.runFor(50ms);
  EXPECT_EQ(mail.editor().text(), "Dear Adatoo early a change,");

  mail.editor().select("Dear");
  keyboard.tap({Key::command, Key::c});
  desktop.runFor(50ms);
  EXPECT_EQ(desktop.pasteboard().text(), "Dear");
}

// When each of ten pastes arrived, and which of ten keys the lossy route let through.
std::vector<std::int64_t> dayOf(std::uint64_t seed) {
  SimulatedDesktop desktop(seed);
  Program& editor = desktop.workspace().launch({"com.example.editor", "Editor"});
  desktop.pasteboard().copy("x");
  std::vector<std::int64_t> day;
  const auto hid = desktop.hidKeyboards().open(
      [&](const HIDValue&) { day.push_back(desktop.now().sinceStart.count()); });
  desktop.hidKeyboards().route().setLoss(0.5);
  for (int paste = 1; paste <= 10; ++paste) {
    desktop.keyboard().tap({Key::command, Key::v});
    desktop.runUntil([&] { return editor.pastes() == paste; });
    day.push_back(desktop.now().sinceStart.count());
    desktop.runFor(100ms);
  }
  return day;
}

TEST(SimulatedSeedTest, TheSameSeedAndTheSameVerbsGiveTheSameDay) {
  EXPECT_EQ(dayOf(5), dayOf(5));
  EXPECT_NE(dayOf(5), dayOf(6));
}

TEST_F(KeyboardTest, KeysGoToWhateverIsInFrontWhenTheyArrive) {
  auto& workspace = desktop.workspace();
  Program& notes = workspace.launch({"com.example.notes", "Notes"});
  std::vector<std::string> activated;
  const auto observer = workspace.observeActivation([&](const RunningApplication& application) {
    activated.push_back(*application.localizedName);
  });
  EXPECT_TRUE(workspace.activate(mail.identity()));
  EXPECT_EQ(workspace.frontmostApplication(), notes.identity());
  desktop.runFor(50ms);
  EXPECT_EQ(workspace.frontmostApplication(), mail.identity());

  notes.setActivation(Program::Activation::ignored);
  EXPECT_TRUE(workspace.activate(notes.identity()));
  notes.setActivation(Program::Activation::refused);
  EXPECT_FALSE(workspace.activate(notes.identity()));
  desktop.runFor(1s);
  EXPECT_EQ(workspace.frontmostApplication(), mail.identity());

  workspace.quit(mail);
  EXPECT_TRUE(workspace.isTerminated(mail.identity()));
  EXPECT_FALSE(workspace.activate(mail.identity()));
  keyboard.tap({Key::n});
  desktop.runFor(50ms);
  EXPECT_EQ(notes.editor().text(), "n");
  EXPECT_EQ(mail.editor().text(), "");
  EXPECT_THAT(activated, ElementsAre("Mail", "Notes"));
}

TEST_F(KeyboardTest, TheProgramItselfComesToTheFrontAndHearsOfIt) {
  int timesActive = 0;
  desktop.application().setEvents({[&] { ++timesActive; }, {}, {}});
  desktop.application().activateIgnoringOtherApps();
  desktop.runFor(50ms);
  EXPECT_EQ(timesActive, 1);
  EXPECT_EQ(desktop.workspace().frontmostApplication()->bundleIdentifier,
            desktop.application().bundle().bundleIdentifier);
}

TEST_F(KeyboardTest, TheClipboardsOwnerMayBeSlowHungOrGone) {
  auto& pasteboard = desktop.pasteboard();
  const auto start = desktop.now();
  pasteboard.copyItems({{{pasteboardTypeString, "text"},
                         {.type = "public.png",
                          .bytes = Bytes(1000, 'p'),
                          .isPromised = true,
                          .makingTime = 300ms}}},
                       mail.process());
  const auto slow = pasteboard.contents();
  EXPECT_THAT(slow->types(0), ElementsAre(pasteboardTypeString, "public.png"));
  EXPECT_EQ(slow->data(0, "public.png")->size(), 1000u);
  EXPECT_EQ(desktop.now() - start, 300ms);
  EXPECT_EQ(slow->data(0, "public.html"), std::nullopt);

  desktop.after(100ms, [&] { desktop.workspace().quit(mail); });
  EXPECT_EQ(slow->data(0, "public.png"), std::nullopt);  // quit while it was making it
  EXPECT_EQ(slow->data(0, pasteboardTypeString), "text");

  pasteboard.copy("never");
  EXPECT_EQ(slow->data(0, pasteboardTypeString), std::nullopt);  // that offer is over
  pasteboard.hangOwner();
  const auto before = desktop.now();
  EXPECT_EQ(pasteboard.string(), std::nullopt);
  EXPECT_EQ(desktop.now() - before, SharedPasteboard::readLimit);
}

TEST_F(KeyboardTest, OwnershipAndItsChangesAreCounted) {
  auto& pasteboard = desktop.pasteboard();
  const std::int64_t first = pasteboard.changeCount();
  pasteboard.clearContents();
  EXPECT_TRUE(pasteboard.setString("ours"));
  EXPECT_EQ(pasteboard.changeCount(), first + 1);
  pasteboard.copy("theirs");
  EXPECT_EQ(pasteboard.changeCount(), first + 2);
  EXPECT_FALSE(pasteboard.setString("ours again"));
  EXPECT_EQ(pasteboard.string(), "theirs");
}

}  // namespace
}  // namespace quillo::simulated
