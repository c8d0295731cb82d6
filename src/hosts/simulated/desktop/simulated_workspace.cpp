#include "hosts/simulated/desktop/simulated_workspace.h"

#include <algorithm>

namespace quillo::simulated {

SimulatedWorkspace::SimulatedWorkspace(VirtualMainThread& mainThread, Timeline& timeline,
                                       SharedPasteboard& pasteboard, SeededRandom random,
                                       SimulatedApplication::Description self)
    : mainThread_(mainThread), timeline_(timeline), pasteboard_(pasteboard), random_(random) {
  launchInBackground(std::move(self));
}

std::optional<RunningApplication> SimulatedWorkspace::frontmostApplication() const {
  return frontmost_ ? std::optional(frontmost_->identity()) : std::nullopt;
}

SimulatedApplication* SimulatedWorkspace::applicationOf(std::int32_t process) const {
  const auto found = std::ranges::find(
      applications_, process, [](const auto& application) { return application->process(); });
  return found == applications_.end() ? nullptr : found->get();
}

SimulatedApplication* SimulatedWorkspace::find(std::int32_t process) const {
  SimulatedApplication* application = applicationOf(process);
  return application && application->isRunning() ? application : nullptr;
}

std::vector<SimulatedApplication*> SimulatedWorkspace::frontToBack() const {
  return {order_.rbegin(), order_.rend()};
}

Result<void, WorkspaceFailure> SimulatedWorkspace::activate(const RunningApplication& wanted) {
  SimulatedApplication* application = find(wanted.processIdentifier);
  if (!application) return WorkspaceFailure::nothingToShow;
  if (application->activation() == SimulatedApplication::Activation::refused)
    return WorkspaceFailure::refused;
  if (application->activation() == SimulatedApplication::Activation::ignored) return {};
  timeline_.after(application->activationTime(), [this, application] {
    if (application->isRunning()) bringToFront(*application);
  });
  return {};
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

void SimulatedWorkspace::bringToFront(SimulatedApplication& application) {
  if (frontmost_ == &application) return;
  frontmost_ = &application;
  std::erase(order_, &application);
  order_.push_back(&application);
  std::erase_if(observers_, [](const auto& old) { return old.expired(); });
  for (const auto& weak : observers_) {
    mainThread_.post([weak, identity = application.identity()] {
      if (const auto observer = weak.lock()) (*observer)(identity);
    });
  }
}

SimulatedApplication& SimulatedWorkspace::launchInBackground(
    SimulatedApplication::Description description) {
  const std::int32_t process = nextProcess_++;
  applications_.push_back(std::make_unique<SimulatedApplication>(
      process, std::move(description), timeline_, pasteboard_, SeededRandom(random_.next())));
  return *applications_.back();
}

SimulatedApplication& SimulatedWorkspace::launch(SimulatedApplication::Description description) {
  SimulatedApplication& application = launchInBackground(std::move(description));
  bringToFront(application);
  return application;
}

void SimulatedWorkspace::focus(SimulatedApplication& application) {
  bringToFront(application);
}

void SimulatedWorkspace::quit(SimulatedApplication& application) {
  application.end();
  leaveFront(application);
}

void SimulatedWorkspace::leaveFront(SimulatedApplication& application) {
  std::erase(order_, &application);
  if (frontmost_ != &application) return;
  frontmost_ = nullptr;
  if (!order_.empty()) bringToFront(*order_.back());
}

}  // namespace quillo::simulated
