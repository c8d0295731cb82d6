// Which of the program's own windows has the keyboard while the program is in front.
#pragma once

#include <functional>
#include <vector>

#include "hosts/simulated/desktop/simulated_workspace.h"

namespace quillo::simulated {

// Windows and panels are told apart by their addresses.
class KeyWindows {
 public:
  explicit KeyWindows(SimulatedWorkspace& workspace) : workspace_(workspace) {}

  bool isKey(const void* window) const;
  // Brings the program to the front with this window.
  void take(const void* window);
  // The keyboard goes back to where it was taken from: to another window, or another program.
  void leave(const void* window);
  // After each take() and leave().
  void setChanged(std::function<void()> changed) { changed_ = std::move(changed); }

 private:
  struct Entry {
    const void* window = nullptr;
    bool wasInFront = false;  // the program, before this window came
  };

  SimulatedWorkspace& workspace_;
  std::vector<Entry> entries_;  // the key one last
  std::function<void()> changed_;
};

}  // namespace quillo::simulated
