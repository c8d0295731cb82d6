// Modal questions as panels.
#pragma once

#include "platform/alerts.h"
#include "platform/panels.h"
#include "platform/screens.h"

namespace quillo::linux_host {

// Needs QGuiApplication. Runs an event loop of its own while a question is open. Escape, and the
// end of the program, press the last button.
class QtAlerts final : public Alerts {
 public:
  // Both outlive this.
  QtAlerts(Panels& panels, Screens& screens) : panels_(panels), screens_(screens) {}

  std::size_t runModal(const Alert& alert) override;

 private:
  void center(Panel& panel) const;

  Panels& panels_;
  Screens& screens_;
};

}  // namespace quillo::linux_host
