// This program, as the simulated desktop sees it.
#pragma once

#include "base/main_thread.h"
#include "platform/application.h"

namespace quillo::simulated {

class RecordedApplication final : public Application {
 public:
  explicit RecordedApplication(MainThread& mainThread);

  const BundleInformation& bundle() const override { return bundle_; }
  void setActivationPolicy(ActivationPolicy policy) override { policy_ = policy; }
  void setAppearance(Appearance appearance) override { appearance_ = appearance; }
  void activateIgnoringOtherApps() override;
  bool hasVisibleWindows() const override { return windows_.hasVisible && windows_.hasVisible(); }
  std::int32_t processIdentifier() const override { return process_; }
  void orderMainWindowsFront() override;
  void terminate() override;
  void setEvents(Events events) override { events_ = std::move(events); }

  // --- Driver ---

  void setProcessIdentifier(std::int32_t process) { process_ = process; }
  BundleInformation& editBundle() { return bundle_; }
  // The desktop tells the program so, in a later turn.
  void becomeActive();
  void reopen();
  // The windows that the application has.
  struct WindowList {
    std::function<bool()> hasVisible;
    std::function<void()> orderFront;
  };
  void setWindows(WindowList windows) { windows_ = std::move(windows); }
  // What activateIgnoringOtherApps() does to the desktop.
  void setActivate(std::function<void()> activate) { activate_ = std::move(activate); }

  ActivationPolicy activationPolicy() const { return policy_; }
  Appearance appearance() const { return appearance_; }
  int activations() const { return activations_; }
  bool isTerminated() const { return isTerminated_; }

 private:
  // The receiver is looked up when the turn comes.
  void tell(std::function<void()> Events::* event);

  MainThread& mainThread_;
  BundleInformation bundle_;
  Events events_;
  std::function<void()> activate_;
  WindowList windows_;
  ActivationPolicy policy_ = ActivationPolicy::regular;
  Appearance appearance_ = Appearance::system;
  bool isTerminated_ = false;
  int activations_ = 0;
  std::int32_t process_ = 0;
};

}  // namespace quillo::simulated
