// Panels for a desktop that has none yet: questions are asked by alerts, and the status is told in
// the system log alone.
#pragma once

#include "base/main_thread.h"
#include "core/navigator.h"
#include "core/review_panel.h"
#include "core/status_panel.h"
#include "platform/application.h"

namespace quillo {

class PlainStatusPanel final : public StatusPanel {
 public:
  void show() override {}
  void hideAfter(Duration) override {}
  void hideNow() override {}
};

class AlertReviewPanel final : public ReviewPanel {
 public:
  explicit AlertReviewPanel(Alerts& alerts) : alerts_(alerts) {}
  Task<ReviewDecision> present(ReviewRequest request) override;

 private:
  Alerts& alerts_;
};

class AlertNavigator final : public Navigator {
 public:
  AlertNavigator(MainThread& mainThread, Alerts& alerts)
      : mainThread_(mainThread), alerts_(alerts) {}
  void openSignIn(const std::string& message) override;
  void openPlans() override;

 private:
  void tell(std::string title, std::string text);

  MainThread& mainThread_;
  Alerts& alerts_;
};

}  // namespace quillo
