#include "input/push_to_talk.h"

#include "input/input_test_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class PushToTalkTest : public InputTest {
 protected:
  void holdWith(const char* shortcut) {
    state_.holdShortcut = shortcut;
    apply("hold");
  }
  // Events reach the program by one route alone.
  void loseEvents(double share) { desktop_.eventMonitors().globalRoute().setLoss(share); }
  void loseKeyStates(double share) { desktop_.hidKeyboards().route().setLoss(share); }

  const std::vector<Key> controlOption_{Key::control, Key::option};
};

TEST_F(PushToTalkTest, AnotherModifierEndsTheHoldAndItsReleaseBeginsANewOne) {
  holdWith("ctrl_opt");
  recording_ = true;
  hold(controlOption_, 100ms);
  hold({Key::shift}, 1s);
  EXPECT_THAT(asked(), IsEmpty());
  letGo({Key::shift}, 249ms);
  EXPECT_THAT(asked(), IsEmpty());
  desktop_.runFor(1s);
  EXPECT_THAT(asked(), ElementsAre("begin"));
  hold({Key::shift}, 0ms);
  EXPECT_THAT(asked(), ElementsAre("stop after start", "end"));
}

TEST_F(PushToTalkTest, EitherRouteIsEnoughAndBothTogetherStartOnce) {
  holdWith("opt_cmd");
  recording_ = true;
  const std::vector<Key> keys{Key::option, Key::rightCommand};
  const auto expectOneHold = [&](const char* routes) {
    SCOPED_TRACE(routes);
    hold(keys, 1s);
    letGo(keys, 1s);
    EXPECT_THAT(asked(), ElementsAre("begin", "stop after start", "end"));
  };
  loseEvents(1);
  expectOneHold("keyboards");
  loseEvents(0);
  loseKeyStates(1);
  expectOneHold("events");
  loseKeyStates(0);
  desktop_.hidKeyboards().route().setLatency(5ms);
  expectOneHold("both");
}

TEST_F(PushToTalkTest, AReleaseThatOneRouteLosesKeepsTheHoldUntilItsNextEvent) {
  holdWith("ctrl_opt");
  recording_ = true;
  hold(controlOption_, 1s);
  loseKeyStates(1);
  letGo(controlOption_, 1s);
  EXPECT_THAT(asked(), ElementsAre("begin"));
  loseKeyStates(0);
  hold({Key::shift}, 0ms);
  EXPECT_THAT(asked(), ElementsAre("stop after start", "end"));
}

TEST_F(PushToTalkTest, LeftAndRightAreToldApartAsFarAsARouteCan) {
  holdWith("right_opt");
  hold({Key::option}, 1s);
  letGo({Key::option});
  EXPECT_THAT(asked(), IsEmpty());
  hold({Key::rightOption}, 1s);
  letGo({Key::rightOption});
  EXPECT_THAT(asked(), ElementsAre("begin", "stop after start"));

  const std::vector<Key> bothOptions{Key::option, Key::rightOption};
  loseEvents(1);
  hold(bothOptions, 1s);
  letGo(bothOptions);
  EXPECT_THAT(asked(), IsEmpty());
  loseEvents(0);
  loseKeyStates(1);
  hold(bothOptions, 1s);
  EXPECT_THAT(asked(), ElementsAre("begin"));
}

TEST_F(PushToTalkTest, ATapTogglesAtEachPressAlone) {
  state_.toggleShortcut = "fn";
  apply("toggle");
  hold({Key::function}, 5s);
  EXPECT_THAT(asked(), ElementsAre("toggle"));
  letGo({Key::function}, 10ms);
  tap({Key::function}, 100ms);
  EXPECT_THAT(asked(), ElementsAre("toggle"));
  hold({Key::shift, Key::function}, 1s);
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(PushToTalkTest, ChangesOfTheSettingsEndAHold) {
  holdWith("ctrl_opt");
  recording_ = true;
  hold(controlOption_, 1s);
  EXPECT_THAT(asked(), ElementsAre("begin"));
  state_.holdShortcut = "fn";
  desktop_.runFor(1s);
  EXPECT_THAT(asked(), IsEmpty());
  hold({Key::capsLock}, 0ms);  // the next event of the one route
  letGo({Key::option}, 0ms);   // and of the other
  EXPECT_THAT(asked(), ElementsAre("stop after start", "end"));

  hold({Key::shift}, 0ms);
  letGo({Key::shift, Key::control, Key::capsLock});
  hold({Key::function}, 1s);
  apply("toggle");
  desktop_.runTurns();
  EXPECT_THAT(asked(), ElementsAre("begin", "stop after start", "end"));
  letGo({Key::function}, 1s);
  apply("hold");
  loseKeyStates(1);  // the one route knows nothing new, and what it knew was of another start
  hold({Key::shift}, 1s);
  EXPECT_THAT(asked(), IsEmpty());
}

}  // namespace
}  // namespace quillo
