// The status panel and the toasts, in virtual time: what they show, when, where, and what a click
// reaches.
#include "shell/status/dictation_hud.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"
#include "shell/toast/toast_panel.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using simulated::SimulatedDesktop;
using simulated::VirtualPanel;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DictationHUDTest : public ::testing::Test {
 protected:
  DictationHUDTest() {
    hud_.follow(dictation_, {.cancelProcessing = [this] { pressed_.push_back("cancel"); },
                             .retryLastRecording = [this] { pressed_.push_back("retry"); },
                             .dismissLastFailure = [this] { pressed_.push_back("dismiss"); }});
  }
  void TearDown() override {
    desktop_.abandonTasks();
    EXPECT_EQ(desktop_.newLiveFrames(), 0);
  }

  simulated::VirtualPanels& panels() { return desktop_.panels(); }
  bool isShown() { return !panels().visible().empty(); }
  VirtualPanel& panel() { return *panels().visible().front(); }
  bool takesClicks() { return panels().takesClickAt({panel().frame().midX(), 60}); }

  SimulatedDesktop desktop_;
  DictationState dictation_;
  Words shortcut_ = words("Ctrl+Option+Space");
  std::vector<std::string> pressed_;
  MacDictationHUD hud_{desktop_.mainThread(), panels(), desktop_.screens(),
                       [this] { return shortcut_; }};
};

TEST_F(DictationHUDTest, ShowsAboveTheBottomOfTheScreenWhereTheUserTypes) {
  EXPECT_EQ(panels().made(), 0);
  hud_.show();
  EXPECT_EQ(panel().frame(), (Rect{{555, 44}, {330, 110}}));

  // A second screen to the left and lower, with a bar at its bottom.
  const Screen primary{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}};
  const Screen second{{{-1920, -180}, {1920, 1080}}, {{-1920, -140}, {1920, 1040}}};
  desktop_.screens().arrange({primary, second});
  desktop_.screens().setMain(1);
  EXPECT_EQ(panel().frame().origin, (Point{555, 44}));  // until the next show
  hud_.show();
  EXPECT_EQ(panel().frame().origin, (Point{-1125, -96}));

  desktop_.screens().setMain(std::nullopt);
  hud_.show();
  EXPECT_EQ(panel().frame().origin, (Point{555, 44}));

  desktop_.screens().arrange({});
  hud_.show();
  EXPECT_EQ(panel().frame().origin, (Point{555, 44}));
  EXPECT_EQ(panels().made(), 1);
}

TEST_F(DictationHUDTest, AShowEndsAPendingHideAndALaterHideReplacesAnEarlierOne) {
  hud_.hideAfter(1s);  // before anything was shown
  desktop_.runUntilIdle();

  hud_.show();
  hud_.hideAfter(3s);
  desktop_.runFor(1s);
  hud_.show();
  desktop_.runFor(1min);
  EXPECT_TRUE(isShown());

  hud_.hideAfter(12s);
  hud_.hideAfter(800ms);
  desktop_.runFor(799ms);
  EXPECT_TRUE(isShown());
  desktop_.runFor(1ms);
  EXPECT_FALSE(isShown());

  hud_.show();
  hud_.hideAfter(3s);
  hud_.hideNow();
  EXPECT_FALSE(isShown());
  hud_.show();
  desktop_.runFor(1min);
  EXPECT_TRUE(isShown());
}

TEST_F(DictationHUDTest, HidingWithoutADelayWaitsForTheNextTurn) {
  hud_.show();
  hud_.hideAfter(Duration::zero());
  EXPECT_TRUE(isShown());
  desktop_.runTurns();
  EXPECT_FALSE(isShown());
}

// What the panel makes of the dictation's flags and texts.
struct State {
  bool recording, processing;
  std::optional<Words> error;
  bool canRetry;
  DictationHUDContent content;
  bool takesClicks;
};

std::vector<State> statesOfTheDictation(const Words& shortcut) {
  const Words error = words("Request timed out. Please try again.");
  using enum StateColor;
  return {
      {true,
       false,
       {},
       false,
       {.symbol = "mic.fill", .color = red, .shortcutText = shortcut, .showsMeter = true},
       false},
      {false, true, {}, false, {.symbol = "sparkles", .color = accent, .offersCancel = true}, true},
      {false,
       false,
       {},
       false,
       {.symbol = "checkmark", .color = accent, .shortcutText = shortcut},
       false},
      {false,
       false,
       error,
       true,
       {.symbol = "exclamationmark.triangle.fill",
        .color = orange,
        .detail = error,
        .shortcutText = shortcut,
        .offersDismiss = true,
        .offersRetry = true},
       true},
      // Work under way while an older failure stands.
      {false,
       true,
       error,
       true,
       {.symbol = "sparkles",
        .color = orange,
        .detail = error,
        .offersDismiss = true,
        .offersCancel = true,
        .offersRetry = true},
       true},
  };
}

TEST_F(DictationHUDTest, WhatItShowsFollowsFromTheDictation) {
  hud_.show();
  for (const State& state : statesOfTheDictation(shortcut_)) {
    dictation_.isRecording = state.recording;
    dictation_.isProcessing = state.processing;
    dictation_.lastError = state.error;
    dictation_.canRetryLast = state.canRetry;
    dictation_.statusText = asItStands(state.content.symbol);
    DictationHUDContent expected = state.content;
    expected.statusText = asItStands(state.content.symbol);
    EXPECT_EQ(hudContent(dictation_, shortcut_), expected) << expected.symbol;
    EXPECT_EQ(takesClicks(), state.takesClicks) << expected.symbol;
  }
  for (const char* button : {"Retry", "Dismiss", "Cancel"}) EXPECT_TRUE(panels().click(button));
  EXPECT_THAT(pressed_, ElementsAre("retry", "dismiss", "cancel"));

  // A failure text during a recording hides the meter.
  dictation_.isProcessing = false;
  dictation_.isRecording = true;
  EXPECT_FALSE(hudContent(dictation_, shortcut_).showsMeter);

  // An error that has nothing to say keeps its symbol, but brings no row and no button.
  dictation_.isRecording = false;
  dictation_.lastError = Words();
  EXPECT_EQ(hudContent(dictation_, shortcut_).symbol, "exclamationmark.triangle.fill");
  EXPECT_THAT(panel().content().controls(), IsEmpty());
}

TEST_F(DictationHUDTest, TheChordIsTheOneOfTheLatestShow) {
  hud_.show();
  shortcut_ = words("Hold Fn");
  EXPECT_TRUE(panel().shows("Ctrl+Option+Space"));
  hud_.show();
  EXPECT_TRUE(panel().shows("Hold Fn"));
  dictation_.statusText = words("Inserted");
  EXPECT_TRUE(panel().shows("Hold Fn"));
}

// --- Toasts ---

class ToastTest : public DictationHUDTest {
 protected:
  ToastPanel toast_{desktop_.mainThread(), panels(), desktop_.screens()};
};

TEST_F(ToastTest, StaysFadesAndGoes) {
  toast_.showToast(words("OK"));
  VirtualPanel& shown = panel();
  // As small as it may be, and 120 below the top of the screen's visible part.
  EXPECT_EQ(shown.frame(), (Rect{{660, 711}, {120, 44}}));
  EXPECT_FALSE(shown.takesClicks());
  desktop_.runFor(1599ms);
  EXPECT_TRUE(shown.isVisible());
  desktop_.runFor(1ms);
  EXPECT_FALSE(shown.isVisible());
  EXPECT_EQ(shown.alpha(), 0);

  toast_.showToast(words("English (United Kingdom) → Portuguese (Brazil)"));
  EXPECT_TRUE(shown.isVisible());
  EXPECT_EQ(shown.alpha(), 1);
  EXPECT_GT(shown.frame().size.width, 280);
  EXPECT_EQ(shown.frame().midX(), 720);
  EXPECT_EQ(panels().made(), 1);
}

TEST_F(ToastTest, ASecondOneReplacesTheTextAndStartsTheTimeAnew) {
  toast_.showToast(words("first"));
  desktop_.runFor(1300ms);
  toast_.showToast(words("second"));
  EXPECT_EQ(panels().showing("first"), nullptr);
  desktop_.runFor(1400ms);
  ASSERT_NE(panels().showing("second"), nullptr);

  // Also in the middle of a fade.
  desktop_.runFor(100ms);
  toast_.showToast(words("third"));
  desktop_.runFor(1599ms);
  EXPECT_NE(panels().showing("third"), nullptr);
  desktop_.runFor(1ms);
  EXPECT_FALSE(isShown());
}

}  // namespace
}  // namespace quillo
