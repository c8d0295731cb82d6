// The programs of the desktop, and which of them is in front.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "hosts/simulated/desktop/program.h"
#include "hosts/simulated/time/virtual_main_thread.h"
#include "platform/workspace.h"

namespace quillo::simulated {

// At first the program under test runs and nothing is in front.
class SimulatedWorkspace final : public Workspace {
 public:
  SimulatedWorkspace(VirtualMainThread& mainThread, Timeline& timeline,
                     SharedPasteboard& pasteboard, SeededRandom random, Program::Description self);

  std::optional<RunningApplication> frontmostApplication() const override;
  bool activate(const RunningApplication& application) override;
  bool isTerminated(const RunningApplication& application) const override;
  [[nodiscard]] std::shared_ptr<void> observeActivation(
      std::function<void(const RunningApplication&)> activated) override;

  // Also when its process has ended; null for an unknown process.
  Program* programOf(std::int32_t process) const;
  // Those that run, the one in front first.
  std::vector<Program*> frontToBack() const;
  // The program that has the keyboard; null when none has.
  Program* frontmost() const { return frontmost_; }

  // --- Driver ---

  // Starts a program and brings it to the front. It lives as long as the desktop, also when its
  // process has ended.
  Program& launch(Program::Description description);
  Program& launchInBackground(Program::Description description);
  // The user brings it to the front, at once.
  void focus(Program& program);
  void focusNothing() { frontmost_ = nullptr; }
  // Its process ends; whatever was in front before it comes back.
  void quit(Program& program);
  // The program has no window left to type into: whatever was in front before it comes back.
  void leaveFront(Program& program);
  // The program under test.
  Program& self() { return *programs_.front(); }

 private:
  Program* find(std::int32_t process) const;
  void bringToFront(Program& program);

  VirtualMainThread& mainThread_;
  Timeline& timeline_;
  SharedPasteboard& pasteboard_;
  SeededRandom random_;
  std::int32_t nextProcess_ = 501;
  std::vector<std::unique_ptr<Program>> programs_;
  std::vector<Program*> order_;  // the latest in front last
  Program* frontmost_ = nullptr;
  using Observer = std::function<void(const RunningApplication&)>;
  std::vector<std::weak_ptr<Observer>> observers_;
};

}  // namespace quillo::simulated
