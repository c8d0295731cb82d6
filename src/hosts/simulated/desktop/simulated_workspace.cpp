#include "hosts/simulated/desktop/simulated_workspace.h"

#include <algorithm>

namespace quillo::simulated {

SimulatedWorkspace::SimulatedWorkspace(VirtualMainThread& mainThread, Timeline& timeline,
                                       SharedPasteboard& pasteboard, SeededRandom random,
                                       Program::Description self)
    : mainThread_(mainThread), timeline_(timeline), pasteboard_(pasteboard), random_(random) {
  launchInBackground(std::move(self));
}

std::optional<RunningApplication> SimulatedWorkspace::frontmostApplication() const {
  return frontmost_ ? std::optional(frontmost_->identity()) : std::nullopt;
}

Program* SimulatedWorkspace::programOf(std::int32_t process) const {
  const auto found =
      std::ranges::find(programs_, process, [](const auto& program) { return program->process(); });
  return found == programs_.end() ? nullptr : found->get();
}

Program* SimulatedWorkspace::find(std::int32_t process) const {
  Program* program = programOf(process);
  return program && program->isRunning() ? program : nullptr;
}

std::vector<Program*> SimulatedWorkspace::frontToBack() const {
  return {order_.rbegin(), order_.rend()};
}

bool SimulatedWorkspace::activate(const RunningApplication& application) {
  Program* program = find(application.processIdentifier);
  if (!program || program->activation() == Program::Activation::refused) return false;
  if (program->activation() == Program::Activation::ignored) return true;
  timeline_.after(program->activationTime(), [this, program] {
    if (program->isRunning()) bringToFront(*program);
  });
  return true;
}

bool SimulatedWorkspace::isTerminated(const RunningApplication& application) const {
  return !find(application.processIdentifier);
}

std::shared_ptr<void> SimulatedWorkspace::observeActivation(
    std::function<void(const RunningApplication&)> activated) {
  auto observer = std::make_shared<Observer>(std::move(activated));
  observers_.push_back(observer);
  return observer;
}

void SimulatedWorkspace::bringToFront(Program& program) {
  if (frontmost_ == &program) return;
  frontmost_ = &program;
  std::erase(order_, &program);
  order_.push_back(&program);
  std::erase_if(observers_, [](const auto& old) { return old.expired(); });
  for (const auto& weak : observers_) {
    mainThread_.post([weak, identity = program.identity()] {
      if (const auto observer = weak.lock()) (*observer)(identity);
    });
  }
}

Program& SimulatedWorkspace::launchInBackground(Program::Description description) {
  const std::int32_t process = nextProcess_++;
  programs_.push_back(std::make_unique<Program>(process, std::move(description), timeline_,
                                                pasteboard_, SeededRandom(random_.next())));
  return *programs_.back();
}

Program& SimulatedWorkspace::launch(Program::Description description) {
  Program& program = launchInBackground(std::move(description));
  bringToFront(program);
  return program;
}

void SimulatedWorkspace::focus(Program& program) {
  bringToFront(program);
}

void SimulatedWorkspace::quit(Program& program) {
  program.end();
  leaveFront(program);
}

void SimulatedWorkspace::leaveFront(Program& program) {
  std::erase(order_, &program);
  if (frontmost_ != &program) return;
  frontmost_ = nullptr;
  if (!order_.empty()) bringToFront(*order_.back());
}

}  // namespace quillo::simulated
