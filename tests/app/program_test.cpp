#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/simulated_program.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(ProgramTest, TheLaunchTriesEveryRouteInItsOrderAndTheEndGivesTheChordsBack) {
  SimulatedProgram world;
  auto& desktop = world.desktop;
  EXPECT_EQ(desktop.application().activations(), 1);  // it is in the Dock
  EXPECT_EQ(desktop.hotKeys().registrationCount(), 1u);
  desktop.application().terminate();
  desktop.runTurns();
  EXPECT_EQ(desktop.hotKeys().registrationCount(), 0u);

  desktop.permissions().setListenEventAccess(false);
  desktop.hotKeys().route().setRefused(true);
  desktop.eventMonitors().globalRoute().setRefused(true);
  desktop.eventMonitors().localRoute().setRefused(true);
  desktop.application().editBundle().version.reset();
  world.program->appState().showInDock = false;
  world.launch();
  EXPECT_EQ(desktop.application().activations(), 1);
  const char* noTap = "[hotkey] event tap could not be created";
  const char* noKeyboards = "[hotkey] HID monitor could not start result=-536870174";
  auto lines = desktop.log().lines();
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("[usage]"); });
  EXPECT_THAT(
      lines, ElementsAre("[app] launch version=1.0 build=100 bundle=/Applications/Quillo.app",
                         "[app] terminate",
                         "[app] launch version=1.0 build=unknown bundle=/Applications/Quillo.app",
                         noTap, "[hotkey] failed to register id=2 status=-9878", noKeyboards, noTap,
                         "[hotkey] failed to register id=1 status=-9878", noKeyboards, noTap,
                         "[hotkey] failed to register id=4 status=-9878", noKeyboards));
  EXPECT_EQ(desktop.permissions().listenEventRequests(), 6);  // each start asks again
  EXPECT_TRUE(desktop.panels().showing("⌃G is already in use — pick another in Settings"));
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
