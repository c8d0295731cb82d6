// A keyboard, every route to the program, and a dictation that records what is asked of it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"
#include "input/cycle_hot_key.h"
#include "input/dictation_shortcuts.h"
#include "state/app_state.h"

namespace quillo {

class InputTest : public testing::Test, protected DictationControls {
 protected:
  ~InputTest() override {
    desktop_.abandonTasks();
    EXPECT_EQ(desktop_.newLiveFrames(), 0);
  }

  bool isRecording() const override { return recording_; }
  Task<> toggleRecording() override {
    asked_.push_back("toggle");
    co_return;
  }
  void beginHoldRecording() override { asked_.push_back("begin"); }
  void endHoldRecording() override { asked_.push_back("end"); }
  void stopHoldAfterStart() override { asked_.push_back("stop after start"); }
  void insertLastResult() override { asked_.push_back("paste last"); }

  void apply(const char* mode) {
    state_.activationMode = mode;
    shortcuts_.applyActivationMode(mode);
  }
  // Presses the chord, lets it go 30 ms later, and waits for `pause` altogether.
  void tap(const std::vector<Key>& chord, Duration pause = std::chrono::seconds(1)) {
    desktop_.keyboard().tap(chord);
    desktop_.runFor(pause);
  }
  void hold(const std::vector<Key>& keys, Duration duration) {
    for (const Key key : keys) desktop_.keyboard().press(key);
    desktop_.runFor(duration);
  }
  void letGo(const std::vector<Key>& keys, Duration pause = {}) {
    for (const Key key : keys) desktop_.keyboard().release(key);
    desktop_.runFor(pause);
  }
  // What was asked of the dictation since the last question.
  std::vector<std::string> asked() { return std::exchange(asked_, {}); }

  simulated::SimulatedDesktop desktop_;
  simulated::SimulatedApplication& editor_ =
      desktop_.workspace().launch({"com.example.notes", "Notes"});
  MacAppState state_{desktop_.mainThread(),  desktop_.userDefaults(), desktop_.clock(),
                     desktop_.random(),      desktop_.machine(),      desktop_.loginItem(),
                     desktop_.application(), desktop_.log()};
  MacHotKeyTap eventTap_{desktop_.mainThread(), desktop_.permissions(), desktop_.eventTaps(),
                         desktop_.log()};
  MacHIDHotKeyMonitor hidMonitor_{desktop_.mainThread(), desktop_.permissions(),
                                  desktop_.hidKeyboards(), desktop_.log()};
  GlobalHotKey hotKey_{desktop_.hotKeys(), desktop_.log()};
  MacPushToTalk pushToTalk_{desktop_.mainThread(), desktop_.eventMonitors(), hidMonitor_, state_,
                            *this};
  ShortcutRoutes routes_{eventTap_, hotKey_, hidMonitor_};
  DictationShortcuts shortcuts_{desktop_.mainThread(), state_, routes_, pushToTalk_, *this};
  CycleHotKey cycle_{desktop_.mainThread(), eventTap_, hotKey_, hidMonitor_,
                     desktop_.eventMonitors()};
  bool recording_ = false;

 private:
  std::vector<std::string> asked_;
};

}  // namespace quillo
