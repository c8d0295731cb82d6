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

  const std::vector<Key> controlOption_{Key::control, Key::option};
};

TEST_F(PushToTalkTest, ChangesOfTheSettingsEndAHold) {
  holdWith("ctrl_opt");
  hold(controlOption_, 1s);
  letGo(controlOption_);
  EXPECT_THAT(asked(), ElementsAre("begin", "stop after start"));  // it is still starting
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
  hold({Key::function}, 100ms);  // about to begin
  apply("toggle");
  letGo({Key::function}, 1s);
  apply("hold");
  desktop_.hidKeyboards().route().setLoss(1);  // what it knew was of another start
  hold({Key::shift}, 1s);
  EXPECT_THAT(asked(), IsEmpty());
}

}  // namespace
}  // namespace quillo
