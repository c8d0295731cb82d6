// Stands for the main window as long as there is none: an alert tells the user what would be there.
#pragma once

#include "base/main_thread.h"
#include "core/navigator.h"
#include "platform/alerts.h"

namespace quillo {

class AlertNavigator final : public Navigator {
 public:
  AlertNavigator(MainThread& mainThread, Alerts& alerts)
      : mainThread_(mainThread), alerts_(alerts) {}
  void openSignIn(const Words& message) override;
  void openPlans() override;

 private:
  void tell(Words title, Words text);

  MainThread& mainThread_;
  Alerts& alerts_;
};

}  // namespace quillo
