#include "hosts/simulated/screen/scripted_alerts.h"

namespace quillo::simulated {

std::size_t ScriptedAlerts::runModal(const Alert& alert) {
  shown_.push_back(alert);
  Answer answer;
  if (!answers_.empty()) {
    answer = answers_.front();
    answers_.pop_front();
  }
  ++open_;
  mainThread_.runModallyFor(answer.after);
  --open_;
  return answer.button;
}

void ScriptedAlerts::answer(std::size_t button, Duration after) {
  answers_.push_back({button, after});
}

}  // namespace quillo::simulated
