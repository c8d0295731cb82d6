// Modal questions as Qt message boxes.
#pragma once

#include "platform/application.h"

namespace quillo::linux_host {

// Needs QApplication. Escape, and closing the window, press the last button.
class QtAlerts final : public Alerts {
 public:
  std::size_t runModal(const Alert& alert) override;
};

}  // namespace quillo::linux_host
