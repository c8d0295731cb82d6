// What the simulated desktop has beyond its ports' contracts: time that goes on, faults, and keys
// that reach the program by several routes.
#include "hosts/simulated/simulated_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SimulatedDesktopTest : public ::testing::Test {
 protected:
  ~SimulatedDesktopTest() override {
    desktop.abandonTasks();
    EXPECT_EQ(desktop.newLiveFrames(), 0);
  }
  Duration elapsed() const { return desktop.now().sinceStart; }

  SimulatedDesktop desktop;
};

TEST_F(SimulatedDesktopTest, TheWorldGoesOnWhileTheMainThreadIsBlocked) {
  std::vector<std::string> order;
  int buffers = 0;
  const auto engine = desktop.audioSystem().makeEngine();
  engine->installTap(4096, [&](AudioBuffer&) { ++buffers; });
  ASSERT_TRUE(engine->start());
  desktop.after(200ms, [&] { order.push_back("key pressed"); });
  desktop.mainThread().callAfter(100ms, [&] { order.push_back("timer"); });
  desktop.mainThread().post([&] {
    desktop.block(1s);
    order.push_back("call returned");
    EXPECT_EQ(buffers, 11);
    engine->removeTap();
  });
  desktop.runFor(2s);
  EXPECT_THAT(order, ElementsAre("key pressed", "call returned", "timer"));
  EXPECT_EQ(buffers, 11);
}

Task<> failLater() {
  co_await sleepFor(1s);
  throw CancellationError();
}

TEST_F(SimulatedDesktopTest, ErrorsThatNobodyAwaitsAndLoopsWithoutEndFailTheRun) {
  start(desktop.mainThread(), failLater());
  EXPECT_THROW(desktop.runFor(2s), CancellationError);
  desktop.runFor(2s);  // reported once
  std::function<void()> again = [&] { desktop.mainThread().post(again); };
  again();
  EXPECT_THROW(desktop.runFor(1s), std::runtime_error);
}

TEST(SeededRandomTest, IsTheGeneratorThatItsSeedsWereKeptFor) {
  // The first outputs for the state that SplitMix64 makes of seed 0, from the reference programs.
  SeededRandom random(0);
  EXPECT_EQ(random.next(), 11091344671253066420ULL);
  for (int i = 0; i < 1000; ++i) EXPECT_LT(random.below(6), 6u);
  EXPECT_EQ(random.below(1), 0u);
}

TEST_F(SimulatedDesktopTest, OffLineFailsOrWaitsByTheSessionsChoice) {
  auto& network = desktop.network();
  const auto ask = [&](WhenOffline whenOffline) {
    const auto session = network.make({60s, 240s, whenOffline});
    return desktop.await(session->data({"https://api.example/usage", "GET", {}, {}, {}}));
  };
  network.setOnline(false);
  EXPECT_FALSE(ask(WhenOffline::fail));
  EXPECT_EQ(elapsed(), 0s);
  network.reply("/usage", Reply{});
  desktop.after(10s, [&] { network.setOnline(true); });
  EXPECT_EQ(std::get<HTTPResponse>(*ask(WhenOffline::waitForConnectivity)).status, 200);
  EXPECT_EQ(elapsed(), 10s);

  network.reply("/usage", Stall{});
  desktop.after(1s, [&] { network.setOnline(false); });
  EXPECT_FALSE(ask(WhenOffline::waitForConnectivity));
  EXPECT_EQ(elapsed(), 11s) << "broken on its way";
}

TEST_F(SimulatedDesktopTest, ATornWriteKeepsTheOldContentsOrHalfOfTheNew) {
  auto& files = desktop.files();
  const FilePath folder = files.temporaryDirectory() / "Logs";
  const FilePath path = folder / "log";
  ASSERT_TRUE(files.createDirectory(folder));
  ASSERT_TRUE(files.writeAtomically(path, "old"));
  files.tearNextWrite();
  EXPECT_FALSE(files.writeAtomically(path, "new"));
  EXPECT_EQ(files.read(path), "old");
  files.tearNextWrite();
  EXPECT_FALSE(files.append(path, "12345678"));
  EXPECT_EQ(files.read(path), "old1234");
  EXPECT_TRUE(files.append(path, "!"));

  files.makeUnwritable(folder);
  EXPECT_FALSE(files.append(path, "x")) << "with everything below it";
  EXPECT_FALSE(files.remove(path));
  EXPECT_EQ(files.read(path), "old1234!");
}

// --- The keyboard with its routes, and the programs in front of it ---

class KeyboardTest : public ::testing::Test {
 protected:
  // Everything that the program sees of a key, by route.
  void watchEveryRoute() {
    auto opened = desktop.eventTaps().createKeyDownTap(
        [this](const KeyEvent& event) {
          if (!event.isAutorepeat) seen.push_back("tap");
          return verdict;
        },
        [this](TapInterruption) { seen.push_back("tap interrupted"); });
    tap = std::move(opened).value_or(nullptr);
    auto registered = desktop.hotKeys().registerHotKey(
        codeOf(Key::space), hot_key_modifiers::control | hot_key_modifiers::option,
        [this] { seen.push_back("hot key"); });
    hotKey = std::move(registered).value_or(nullptr);
    auto monitor = desktop.eventMonitors().addGlobalMonitor(
        KeyEvent::Type::keyDown, [this](const KeyEvent&) { seen.push_back("global"); });
    global = std::move(monitor).value_or(nullptr);
    local =
        *desktop.eventMonitors().addLocalMonitor(KeyEvent::Type::keyDown, [this](const KeyEvent&) {
          seen.push_back("local");
          return verdict;
        });
    auto keyboards = desktop.hidKeyboards().open([this](const HIDValue& value) {
      if (!hid::isModifier(value.usage) && value.value != 0) seen.push_back("hid");
    });
    manager = std::move(keyboards).value_or(nullptr);
  }
  std::vector<std::string> seenOf(const std::vector<Key>& chord) {
    seen.clear();
    desktop.keyboard().tap(chord);
    desktop.runFor(100ms);
    return seen;
  }

  SimulatedDesktop desktop;
  SimulatedKeyboard& keyboard = desktop.keyboard();
  SimulatedApplication& mail = desktop.workspace().launch({"com.example.mail", "Mail"});
  std::vector<std::string> seen;
  TapVerdict verdict = TapVerdict::pass;
  std::unique_ptr<EventTaps::Tap> tap;
  std::shared_ptr<void> hotKey;
  std::shared_ptr<void> global;
  std::shared_ptr<void> local;
  std::unique_ptr<HIDKeyboards::Manager> manager;
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
  EXPECT_EQ(desktop.eventTaps().createKeyDownTap({}, {}), EventTapFailure::notAllowed);
  EXPECT_EQ(desktop.hidKeyboards().open({}), RoutedHIDKeyboards::notPermitted);
  watchEveryRoute();
  EXPECT_THAT(seenOf({Key::a}), ElementsAre("global"));  // accessibility is enough for it
  desktop.permissions().setAccessibilityTrusted(false);
  EXPECT_THAT(seenOf({Key::a}), IsEmpty());
  EXPECT_THAT(seenOf(toggleChord), ElementsAre("hot key"));

  desktop.permissions().setListenEventAccess(true);
  watchEveryRoute();
  keyboard.setSecureInput(true);
  mail.editor().setText("");
  EXPECT_THAT(seenOf({Key::b}), IsEmpty());
  EXPECT_TRUE(keyboard.post(codeOf(Key::v), KeyDirection::down, event_flags::command, 0));
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

TEST_F(KeyboardTest, AClipboardsOwnerMayEndWhileItMakesWhatItPromised) {
  auto& pasteboard = desktop.pasteboard();
  const auto start = desktop.now();
  pasteboard.copyItems({{{pasteboardTypeString, "text"},
                         {.type = "public.png",
                          .bytes = Bytes(1000, 'p'),
                          .isPromised = true,
                          .makingTime = 300ms}}},
                       mail.process());
  const auto slow = pasteboard.contents();
  EXPECT_EQ(slow->data(0, "public.png")->size(), 1000u);
  EXPECT_EQ(desktop.now() - start, 300ms);
  desktop.after(100ms, [&] { desktop.workspace().quit(mail); });
  EXPECT_EQ(slow->data(0, "public.png"), PasteboardFailure::absent);
  EXPECT_EQ(slow->data(0, pasteboardTypeString), "text");
  pasteboard.copy("never");
  EXPECT_EQ(slow->data(0, pasteboardTypeString), PasteboardFailure::absent);  // that offer is over
}

}  // namespace
}  // namespace quillo::simulated
