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
  bool hasVisibleWindows() const override { return windowsAreVisible_; }
  void orderMainWindowsFront() override;
  void terminate() override;
  void setEvents(Events events) override { events_ = std::move(events); }

  // --- Driver ---

  BundleInformation& editBundle() { return bundle_; }
  void setWindowsVisible(bool visible) { windowsAreVisible_ = visible; }
  // The desktop tells the program so, in a later turn.
  void becomeActive();
  void reopen();
  // What activateIgnoringOtherApps() does to the desktop.
  void setActivate(std::function<void()> activate) { activate_ = std::move(activate); }

  ActivationPolicy activationPolicy() const { return policy_; }
  Appearance appearance() const { return appearance_; }
  int activations() const { return activations_; }
  int windowsOrderedFront() const { return windowsOrderedFront_; }
  bool isTerminated() const { return isTerminated_; }

 private:
  // The receiver is looked up when the turn comes.
  void tell(std::function<void()> Events::* event);

  MainThread& mainThread_;
  BundleInformation bundle_;
  Events events_;
  std::function<void()> activate_;
  ActivationPolicy policy_ = ActivationPolicy::regular;
  Appearance appearance_ = Appearance::system;
  bool windowsAreVisible_ = false;
  bool isTerminated_ = false;
  int activations_ = 0;
  int windowsOrderedFront_ = 0;
};

}  // namespace quillo::simulated
