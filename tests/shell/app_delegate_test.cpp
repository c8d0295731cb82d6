#include "shell/lifecycle/app_delegate.h"

#include "input/input_test_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class AppDelegateTest : public InputTest {
 protected:
  // What the launch and the end reach in other rooms goes to the log, which shows the order.
  std::function<void()> noted(const char* what) {
    return [this, what] { desktop_.log().log("test", what); };
  }
  std::vector<std::string> newLines() {
    const auto lines = desktop_.log().lines();
    return {lines.begin() + std::exchange(seenLines_, std::ssize(lines)), lines.end()};
  }

  MurmexMacAppDelegate delegate_{
      desktop_.mainThread(),
      desktop_.application(),
      desktop_.alerts(),
      state_,
      shortcuts_,
      hotKey_,
      desktop_.log(),
      {.provideServices = noted("services"),
       .startSelectionBubble = noted("bubble"),
       .configureGoogleSignIn = [this](const std::string& id) { noted(id.c_str())(); },
       .installPendingUpdate = noted("update")}};

 private:
  std::ptrdiff_t seenLines_ = 0;
};

TEST_F(AppDelegateTest, LaunchesAndTerminatesInItsOrder) {
  desktop_.permissions().setListenEventAccess(false);
  desktop_.application().editBundle().googleClientID = "client";
  state_.selectionBubbleEnabled = true;
  state_.appearance = "dark";
  desktop_.application().setAppearance(Appearance::system);
  state_.setCyclePairBinding([this](auto...) {
    noted("cycle")();
    return true;
  });

  delegate_.applicationDidFinishLaunching();
  const char* noTap = "[hotkey] event tap could not be created";
  const char* noKeyboards = "[hotkey] HID monitor could not start result=-536870174";
  EXPECT_THAT(newLines(),
              ElementsAre("[app] launch version=1.0 build=100 bundle=/Applications/Quillo.app",
                          noTap, noKeyboards, noTap, noKeyboards, "[test] services", "[test] cycle",
                          "[test] client"));
  EXPECT_EQ(desktop_.application().appearance(), Appearance::dark);
  desktop_.runFor(1999ms);
  EXPECT_THAT(newLines(), ElementsAre());
  desktop_.runFor(1ms);
  EXPECT_THAT(newLines(), ElementsAre("[test] bubble"));

  delegate_.applicationDidBecomeActive();  // the bubble is on: there is nothing to ask
  EXPECT_TRUE(desktop_.alerts().shown().empty());
  EXPECT_TRUE(state_.sawSelectionBubbleIntro);

  delegate_.applicationWillTerminate();
  EXPECT_THAT(newLines(), ElementsAre("[app] terminate", "[test] update"));
}

TEST_F(AppDelegateTest, StartsNoBubbleThatIsSwitchedOffMeanwhile) {
  state_.selectionBubbleEnabled = true;
  delegate_.applicationDidFinishLaunching();
  newLines();
  state_.selectionBubbleEnabled = false;
  desktop_.runFor(5s);
  EXPECT_THAT(newLines(), ElementsAre());
}

}  // namespace
}  // namespace quillo
