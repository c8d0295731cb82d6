// The programs of the desktop, and which of them is in front.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "hosts/simulated/desktop/simulated_application.h"
#include "hosts/simulated/time/virtual_main_thread.h"
#include "platform/workspace.h"

namespace quillo::simulated {

// At first the program under test runs and nothing is in front.
class SimulatedWorkspace final : public Workspace {
 public:
  SimulatedWorkspace(VirtualMainThread& mainThread, Timeline& timeline,
                     SharedPasteboard& pasteboard, SeededRandom random,
                     SimulatedApplication::Description self);

  std::optional<RunningApplication> frontmostApplication() const override;
  Result<void, WorkspaceFailure> activate(const RunningApplication& application) override;
  bool isTerminated(const RunningApplication& application) const override;
  [[nodiscard]] std::shared_ptr<void> observeActivation(
      std::function<void(const RunningApplication&)> activated) override;

  // Also when its process has ended; null for an unknown process.
  SimulatedApplication* applicationOf(std::int32_t process) const;
  // Those that run, the one in front first.
  std::vector<SimulatedApplication*> frontToBack() const;
  // The program that has the keyboard; null when none has.
  SimulatedApplication* frontmost() const { return frontmost_; }

  // --- Driver ---

  // Starts a program and brings it to the front. It lives as long as the desktop, also when its
  // process has ended.
  SimulatedApplication& launch(SimulatedApplication::Description description);
  SimulatedApplication& launchInBackground(SimulatedApplication::Description description);
  // The user brings it to the front, at once.
  void focus(SimulatedApplication& application);
  void focusNothing() { frontmost_ = nullptr; }
  // Its process ends; whatever was in front before it comes back.
  void quit(SimulatedApplication& application);
  // The program has no window left to type into: whatever was in front before it comes back.
  void leaveFront(SimulatedApplication& application);
  // The program under test.
  SimulatedApplication& self() { return *applications_.front(); }

 private:
  SimulatedApplication* find(std::int32_t process) const;
  void bringToFront(SimulatedApplication& application);

  VirtualMainThread& mainThread_;
  Timeline& timeline_;
  SharedPasteboard& pasteboard_;
  SeededRandom random_;
  std::int32_t nextProcess_ = 501;
  std::vector<std::unique_ptr<SimulatedApplication>> applications_;
  std::vector<SimulatedApplication*> order_;  // the latest in front last
  SimulatedApplication* frontmost_ = nullptr;
  using Observer = std::function<void(const RunningApplication&)>;
  std::vector<std::weak_ptr<Observer>> observers_;
};

}  // namespace quillo::simulated
