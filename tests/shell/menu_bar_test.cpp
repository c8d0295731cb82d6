// The menu of the status item: what it offers in which state, and what follows what.
#include "shell/menu/menu_bar.h"

#include "account/account_fixture.h"

namespace quillo {
namespace {

using testing::ElementsAre;

class MenuBarTest : public AccountTest {
 protected:
  MenuBarTest() { launch(); }

  void showMenu() {
    const auto note = [this](std::string what) { return [this, what] { done_.push_back(what); }; };
    menuBar_.emplace(
        desktop_.mainThread(), item(), dictation_, *state_, *state_, *auth_, desktop_.session(),
        MenuBarActions{
            .toggleRecording = note("toggle"),
            .retryLastRecording = note("retry"),
            .insertLastResult = note("paste"),
            .copyLastResult = note("copy"),
            .cycleLanguagePair = note("cycle"),
            .applyProfile =
                [this](const WritingProfile& profile) { state_->applyProfile(profile); },
            .showAccount = note("account"),
            .showMainWindow = note("window"),
            .checkForUpdates = note("updates"),
            .reportIssue = note("report"),
            .openDiagnosticsLog = note("log"),
            .quit = note("quit"),
        });
    EXPECT_FALSE(item().isShown());  // the launch goes first
    desktop_.runTurns();
  }
  simulated::VirtualStatusItem& item() { return desktop_.statusItem(); }
  std::vector<std::string> titles() {
    std::vector<std::string> titles;
    for (const MenuItem& entry : item().menu())
      titles.push_back(entry.isSeparator() ? "-" : entry.title.english());
    return titles;
  }
  // Of the items of the dictation, those that can be chosen.
  std::vector<std::string> choices() {
    std::vector<std::string> choices;
    for (std::size_t i = 0; i < 4; ++i)
      if (item().menu()[i].isEnabled) choices.push_back(item().menu()[i].title.english());
    return choices;
  }

  DictationState dictation_;
  std::vector<std::string> done_;
  std::optional<MenuBar> menuBar_;
};

TEST_F(MenuBarTest, OffersEverythingInItsOrder) {
  showMenu();
  EXPECT_THAT(titles(),
              ElementsAre("Start Dictation", "Retry Last Dictation", "Paste Last Result",
                          "Copy Last Result", "-", "Swap Input / Output (⌃G)", "-",
                          "Sign in to dictate…", "-", "Open Quillo", "Check for Updates…", "-",
                          "Report an Issue…", "Open Diagnostics Log…", "Quit Quillo"));
  dictation_.lastResult = "Hello.";
  dictation_.canRetryLast = true;
  desktop_.runTurns();
  for (const std::string& title : titles())
    EXPECT_TRUE(title == "-" || item().choose(title)) << title;
  EXPECT_THAT(done_, ElementsAre("toggle", "retry", "paste", "copy", "cycle", "account", "window",
                                 "updates", "report", "log", "quit"));
}

TEST_F(MenuBarTest, FollowsTheDictationAndTheUpdater) {
  showMenu();
  EXPECT_EQ(item().icon(), "waveform.circle");
  EXPECT_THAT(choices(), ElementsAre("Start Dictation"));
  dictation_.canRetryLast = true;
  dictation_.isRecording = true;
  menuBar_->setHasUpdateBadge(true);
  desktop_.runTurns();
  EXPECT_EQ(item().icon(), "mic.circle.fill");
  EXPECT_THAT(choices(), ElementsAre("Stop Dictation"));
  dictation_.isRecording = false;
  dictation_.isProcessing = true;
  dictation_.lastResult = "Hello.";
  menuBar_->setIsCheckingForUpdates(true);
  desktop_.runTurns();
  EXPECT_EQ(item().icon(), "arrow.down.circle.fill");
  EXPECT_THAT(choices(), ElementsAre("Copy Last Result"));
  ASSERT_TRUE(item().item("Checking for Updates…"));
  EXPECT_FALSE(item().choose("Checking for Updates…"));
}

TEST_F(MenuBarTest, FollowsEachThingThatItShows) {
  showMenu();
  const std::vector<std::function<void()>> changes = {
      [this] { dictation_.isRecording = true; },
      [this] { dictation_.isProcessing = true; },
      [this] { dictation_.canRetryLast = true; },
      [this] { dictation_.lastResult = "Hello."; },
      [this] { state_->cycleHotKeyKeyCode = 38; },
      [this] { state_->saveCurrentProfile("Work"); },
      [this] { state_->inputLanguage = "fr"; },
      [this] { state_->outputLanguage = "de"; },
      [this] { state_->transformMode = "improve"; },
      [this] { state_->tone = "formal"; },
      [this] { state_->formatStyle = "email"; },
      [this] { auth_->userEmail = "ada@example.org"; },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    item().setMenu({});
    changes[i]();
    desktop_.runTurns();
    EXPECT_FALSE(item().menu().empty()) << "after change " << i;
  }
}

TEST_F(MenuBarTest, NamesWhatTheCycleChordDoesAndSwitchesProfiles) {
  showMenu();
  state_->saveCurrentProfile("Work");
  desktop_.runTurns();
  EXPECT_NE(item().item("Swap Input / Output (⌃G)"), nullptr);
  EXPECT_TRUE(item().item("Switch Writing Profile/Work")->isChecked);

  state_->outputLanguage = "de";
  state_->saveCurrentProfile("Letters");
  state_->cycleHotKeyKeyCode = 38;
  desktop_.runTurns();
  EXPECT_NE(item().item("Next Writing Profile (⌃J)"), nullptr);
  EXPECT_TRUE(item().item("Switch Writing Profile/Letters")->isChecked);
  EXPECT_TRUE(item().choose("Switch Writing Profile/Work"));
  desktop_.runTurns();
  EXPECT_TRUE(item().item("Switch Writing Profile/Work")->isChecked);
  EXPECT_FALSE(item().item("Switch Writing Profile/Letters")->isChecked);
  EXPECT_NE(state_->outputLanguage.get(), "de");
}

TEST_F(MenuBarTest, ShowsTheAccount) {
  launchSignedIn();
  showMenu();
  ASSERT_TRUE(item().item("ada@example.org"));
  EXPECT_FALSE(item().choose("ada@example.org"));
  auth_->userEmail = std::nullopt;
  desktop_.runTurns();
  EXPECT_TRUE(item().item("Signed in"));
  auth_->signOut();
  desktop_.runTurns();
  EXPECT_TRUE(item().choose("Sign in to dictate…"));
}

}  // namespace
}  // namespace quillo
