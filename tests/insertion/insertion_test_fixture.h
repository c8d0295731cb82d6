// A desktop with an editor in front, and the clipboard's borrowers.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"
#include "insertion/clipboard_capture.h"
#include "insertion/text_insertion.h"

namespace quillo {

class InsertionTest : public testing::Test {
 protected:
  ~InsertionTest() override {
    desktop_.abandonTasks();
    EXPECT_EQ(desktop_.newLiveFrames(), 0);
    EXPECT_FALSE(gate_.isBusy());
    EXPECT_TRUE(keyboard_.postedKeysDown().empty());
  }

  TaskHandle<bool> startInsert(std::string text) {
    return start(desktop_.mainThread(), insertion_.insertText(std::move(text), std::nullopt));
  }
  // How long the desktop needs to come to rest.
  Duration timeUntilIdle() {
    const MonotonicTime begin = desktop_.now();
    desktop_.runUntilIdle();
    return desktop_.now() - begin;
  }

  simulated::SimulatedDesktop desktop_;
  simulated::SimulatedKeyboard& keyboard_ = desktop_.keyboard();
  simulated::SharedPasteboard& pasteboard_ = desktop_.pasteboard();
  simulated::SimulatedApplication& editor_ =
      desktop_.workspace().launch({"com.example.notes", "Notes"});
  MacClipboardGate gate_;
  MacTextInsertion insertion_{desktop_.mainThread(),
                              desktop_.permissions(),
                              desktop_.workspace(),
                              pasteboard_,
                              keyboard_,
                              keyboard_,
                              desktop_.application(),
                              gate_,
                              desktop_.log()};
  ClipboardCapture capture_{desktop_.mainThread(), pasteboard_, keyboard_, keyboard_, gate_,
                            desktop_.log()};
};

}  // namespace quillo
