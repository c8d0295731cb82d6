// Modal questions, answered by a scripted user.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "hosts/simulated/time/virtual_main_thread.h"
#include "platform/alerts.h"

namespace quillo::simulated {

// Without a scripted answer the user presses the default button after a second.
class ScriptedAlerts final : public Alerts {
 public:
  explicit ScriptedAlerts(VirtualMainThread& mainThread) : mainThread_(mainThread) {}

  std::size_t runModal(const Alert& alert) override;

  // --- Driver ---

  // The next question that has no answer yet is answered with this button, this long after.
  // `meanwhile` runs while the question is there, and may let time pass.
  void answer(std::size_t button, Duration after = std::chrono::seconds(1),
              std::function<void()> meanwhile = {});
  std::size_t answersLeft() const { return answers_.size(); }
  // Every question so far, the open one included.
  const std::vector<Alert>& shown() const { return shown_; }
  int open() const { return open_; }

 private:
  struct Answer {
    std::size_t button = 0;
    Duration after = std::chrono::seconds(1);
    std::function<void()> meanwhile{};
  };

  VirtualMainThread& mainThread_;
  std::deque<Answer> answers_;
  std::vector<Alert> shown_;
  int open_ = 0;
};

}  // namespace quillo::simulated
