#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/simulated_program.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using simulated::Key;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(ProgramTest, ADictationGoesFromTheShortcutIntoTheEditor) {
  SimulatedProgram world(1, 300ms);
  world.desktop.pasteboard().copy("what the user had copied");
  world.editor.editor().setText("Dear reader: ");

  world.pressToggle();
  ASSERT_TRUE(world.runUntilStatus("Listening"));
  world.desktop.voice().speak(2s);
  world.desktop.runFor(2s);
  world.pressToggle();
  ASSERT_TRUE(world.runUntilStatus("Inserted"));
  world.desktop.runFor(1min);

  EXPECT_EQ(world.editor.editor().text(), "Dear reader: hello world.");
  EXPECT_EQ(world.desktop.pasteboard().text(), "what the user had copied");
  EXPECT_THAT(world.desktop.sounds().names(), ElementsAre("Tink", "Pop"));
  EXPECT_EQ(world.program->history().entries->size(), 1u);
  for (const FilePath& file : world.desktop.files().allFiles())
    EXPECT_THAT(file.string(), testing::Not(HasSubstr("murmex_mac")))
        << "a recording was left behind";
  EXPECT_TRUE(world.desktop.keyboard().postedKeysDown().empty());
}

TEST(ProgramTest, PasteLastInsertsTheResultAgainAndReopeningBringsTheWindowBack) {
  SimulatedProgram world;
  world.pressToggle();
  ASSERT_TRUE(world.runUntilStatus("Listening"));
  world.desktop.voice().speak(1s);
  world.desktop.runFor(1s);
  world.pressToggle();
  ASSERT_TRUE(world.runUntilStatus("Inserted"));
  world.desktop.runFor(5s);

  world.editor.editor().setText("");
  world.desktop.keyboard().tap({Key::control, Key::command, Key::v});
  world.desktop.runFor(100ms);
  world.desktop.keyboard().tap({Key::control, Key::command, Key::v});  // within the debounce
  world.desktop.runFor(5s);
  EXPECT_EQ(world.editor.editor().text(), "hello world.");
}

TEST(ProgramTest, SettingsReachTheShortcutsAsTheyAreAssigned) {
  SimulatedProgram world;
  world.program->appState().activationMode = "hold";
  world.pressToggle();
  world.desktop.runFor(3s);
  EXPECT_EQ(world.program->dictation().statusText.get(), "Ready") << "the toggle chord is unbound";

  world.desktop.keyboard().press(Key::control);
  world.desktop.keyboard().press(Key::option);
  EXPECT_TRUE(world.runUntilStatus("Listening"));
  world.desktop.voice().speak(1s);
  world.desktop.runFor(1s);
  world.desktop.keyboard().release(Key::option);
  world.desktop.keyboard().release(Key::control);
  EXPECT_TRUE(world.runUntilStatus("Inserted"));
}

TEST(ProgramTest, TheIntroIsAskedOnceWhateverTheAnswer) {
  SimulatedProgram world;
  world.desktop.alerts().answer(1);
  world.desktop.application().becomeActive();
  world.desktop.application().becomeActive();
  world.desktop.runFor(5s);
  EXPECT_EQ(world.desktop.alerts().shown().size(), 1u);
  EXPECT_FALSE(world.program->appState().selectionBubbleEnabled);
  EXPECT_EQ(world.desktop.userDefaults().boolean("mac.sawSelectionBubbleIntro"), true);
}

TEST(ProgramTest, LaunchAndTerminateAreLoggedAndGiveTheChordsBack) {
  SimulatedProgram world;
  EXPECT_THAT(world.desktop.log().lines(), Contains(HasSubstr("[app] launch version=")));
  world.desktop.application().terminate();
  world.desktop.runTurns();
  EXPECT_THAT(world.desktop.log().lines(), Contains("[app] terminate"));
}

TEST(ProgramTest, NoFrameOutlivesTheProgramEvenInTheMiddleOfADictation) {
  const auto frames = liveFrameCount();
  {
    SimulatedProgram world(1, 10s);
    world.pressToggle();
    ASSERT_TRUE(world.runUntilStatus("Listening"));
    world.desktop.voice().speak(1s);
    world.desktop.runFor(1s);
    world.pressToggle();
    ASSERT_TRUE(world.runUntilStatus("Transcribing"));
  }
  EXPECT_EQ(liveFrameCount(), frames);
}

}  // namespace
}  // namespace quillo
