// A simulated desktop, and on it one run after another of the program's settings.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "hosts/simulated/simulated_desktop.h"
#include "state/app_state.h"

namespace quillo {

class StateTest : public testing::Test {
 protected:
  // Starts the program; a second time quits the first run, and what is on the disk stays.
  MacAppState& launch() {
    desktop_.abandonTasks();
    desktop_.userDefaults().reload();
    state_.reset();
    state_.emplace(desktop_.mainThread(), desktop_.userDefaults(), desktop_.clock(),
                   desktop_.random(), desktop_.machine(), desktop_.loginItem(),
                   desktop_.application(), desktop_.log());
    state_->setToast([this](const Words& text) { toasts_.push_back(text.english()); });
    return *state_;
  }
  simulated::MemoryUserDefaults& stored() { return desktop_.userDefaults(); }

  void TearDown() override {
    desktop_.abandonTasks();
    EXPECT_EQ(desktop_.newLiveFrames(), 0);
  }

  simulated::SimulatedDesktop desktop_;
  std::vector<std::string> toasts_;
  std::optional<MacAppState> state_;
};

}  // namespace quillo
