#include "input/dictation_shortcuts.h"

#include "input/input_test_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class DictationShortcutsTest : public InputTest {
 protected:
  void bindAll() {
    shortcuts_.bindPasteLast();
    apply("toggle");
  }
  // Which routes there are: of tap and keyboards, the first has the chords alone to itself.
  void refuse(bool tap, bool keyboards) {
    desktop_.eventTaps().route().setRefused(tap);
    desktop_.hidKeyboards().route().setRefused(keyboards);
  }

  const std::vector<Key> toggle_{Key::control, Key::option, Key::space};
  const std::vector<Key> pasteLast_{Key::control, Key::command, Key::v};
};

TEST_F(DictationShortcutsTest, AKeyboardThatReportsAKeyTwiceFiresOnceAndKnowsOnlyWhatItHasSeen) {
  int fired = 0;
  hidMonitor_.bind("test", {44, {ShortcutModifier::control}, [&] { ++fired; }});
  hidMonitor_.start();
  tap({Key::control, Key::space}, 249ms);
  tap({Key::control, Key::space});
  EXPECT_EQ(fired, 1);
  tap({Key::control, Key::space}, 250ms);
  tap({Key::control, Key::space});
  EXPECT_EQ(fired, 3);
  desktop_.hidKeyboards().route().setDuplication(1);
  hold({Key::control, Key::space}, 1s);
  EXPECT_EQ(fired, 4);

  hidMonitor_.stop();
  hidMonitor_.start();
  letGo({Key::space});
  hold({Key::space}, 1s);
  EXPECT_EQ(fired, 4);  // that control is down was before its time
}

TEST_F(DictationShortcutsTest, TheTapKeepsTheChordAndItsRepeatsFromTheEditor) {
  refuse(false, true);
  bindAll();
  hold(toggle_, 2s);
  letGo({Key::space, Key::option, Key::control});
  EXPECT_THAT(asked(), ElementsAre("toggle"));
  for (const KeyEvent& event : editor_.receivedKeys())
    EXPECT_NE(event.type, KeyEvent::Type::keyDown) << event.keyCode;

  desktop_.eventTaps().interrupt(TapInterruption::timeout);
  desktop_.runTurns();
  tap(toggle_);
  EXPECT_THAT(asked(), ElementsAre("toggle"));
}

TEST_F(DictationShortcutsTest, ChangingTheShortcutLeavesNoRouteOnTheOldOne) {
  bindAll();
  for (const char* shortcut : {"right_opt", "fn"}) {
    state_.toggleShortcut = shortcut;
    apply("toggle");
    tap(toggle_);
    EXPECT_THAT(asked(), IsEmpty());
  }
  tap({Key::function});
  tap(pasteLast_);
  EXPECT_THAT(asked(), ElementsAre("toggle", "paste last"));

  state_.toggleShortcut = "no such shortcut";
  apply("no such mode");  // bound as for toggling, but the action knows better
  tap(toggle_);
  tap({Key::function});
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_EQ(desktop_.eventMonitors().monitorCount(), 0u);

  eventTap_.unbind("pasteLast");
  apply("hold");
  EXPECT_FALSE(eventTap_.isRunning());  // nobody needs it any more
  for (const bool refused : {true, false, true}) {
    eventTap_.stop();
    refuse(refused, false);
    apply("toggle");
    EXPECT_EQ(desktop_.hotKeys().registrationCount(), refused ? 1u : 0u);
  }
  apply("hold");
  EXPECT_EQ(desktop_.hotKeys().registrationCount(), 0u);
}

// --- The cycle hot key ---

class CycleHotKeyTest : public InputTest {
 protected:
  bool bind(std::int64_t keyCode, const char* character) {
    return cycle_.bindCyclePair(keyCode, character, hot_key_modifiers::control,
                                [this] { ++steps_; });
  }
  int stepsOf(Key key, Duration pause = 1s) {
    steps_ = 0;
    tap({Key::control, key}, pause);
    return steps_;
  }
  int steps_ = 0;
};

TEST_F(CycleHotKeyTest, OnePressIsOneStepAndAnEarlierChordIsForgotten) {
  EXPECT_TRUE(bind(5, "G"));
  EXPECT_EQ(stepsOf(Key::g, 299ms), 1);
  EXPECT_EQ(stepsOf(Key::g), 0);
  EXPECT_TRUE(bind(38, "J"));
  EXPECT_EQ(stepsOf(Key::g), 0);
  EXPECT_EQ(stepsOf(Key::j), 1);
  EXPECT_TRUE(bind(0, "A"));  // which the keyboards are not asked for
  EXPECT_EQ(stepsOf(Key::j), 0);
  EXPECT_EQ(stepsOf(Key::a), 1);
  EXPECT_EQ(desktop_.hotKeys().registrationCount(), 1u);
  EXPECT_EQ(desktop_.eventMonitors().monitorCount(), 2u);
}

TEST_F(CycleHotKeyTest, TheMonitorsServeWhenEverythingElseFailsAndCountAHeldChordOnce) {
  desktop_.eventTaps().route().setRefused(true);
  desktop_.hidKeyboards().route().setRefused(true);
  desktop_.hotKeys().route().setRefused(true);
  EXPECT_TRUE(bind(5, "G"));
  for (simulated::SimulatedApplication* front : {&editor_, &desktop_.workspace().self()}) {
    desktop_.workspace().focus(*front);
    steps_ = 0;
    hold({Key::control, Key::g}, 2s);
    letGo({Key::g, Key::control}, 1s);
    EXPECT_EQ(steps_, 1);
  }
  desktop_.eventMonitors().globalRoute().setRefused(true);
  EXPECT_TRUE(bind(5, "G"));
  desktop_.eventMonitors().localRoute().setRefused(true);
  EXPECT_FALSE(bind(5, "G"));
}

}  // namespace
}  // namespace quillo
