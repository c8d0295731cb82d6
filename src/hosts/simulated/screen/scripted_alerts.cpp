#include "hosts/simulated/screen/scripted_alerts.h"

#include <algorithm>
#include <utility>

namespace quillo::simulated {

std::size_t ScriptedAlerts::runModal(const Alert& alert) {
  shown_.push_back(alert);
  Answer answer;
  if (!answers_.empty()) {
    answer = std::move(answers_.front());
    answers_.pop_front();
  }
  ++open_;
  const MonotonicTime end = mainThread_.now() + answer.after;
  if (answer.meanwhile) answer.meanwhile();
  mainThread_.runModallyFor(std::max(end - mainThread_.now(), Duration::zero()));
  --open_;
  return answer.button;
}

void ScriptedAlerts::answer(std::size_t button, Duration after, std::function<void()> meanwhile) {
  answers_.push_back({button, after, std::move(meanwhile)});
}

}  // namespace quillo::simulated
