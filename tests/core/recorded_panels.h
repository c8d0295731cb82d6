// The upper rooms, as the core sees them: what they were asked for, and a user who answers.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "base/task.h"
#include "core/navigator.h"
#include "core/review_panel.h"
#include "core/status_panel.h"

namespace quillo {

class RecordedNavigator final : public Navigator {
 public:
  void openSignIn(const Words& message) override { signInMessages.push_back(message.english()); }
  void openPlans() override { ++plansOpened; }

  std::vector<std::string> signInMessages;
  int plansOpened = 0;
};

// Requests as "show", "hide" and "hide after 1.2".
class RecordedStatusPanel final : public StatusPanel {
 public:
  void show() override { requests.emplace_back("show"); }
  void hideAfter(Duration delay) override {
    requests.push_back("hide after " + std::to_string(toSeconds(delay)).substr(0, 4));
  }
  void hideNow() override { requests.emplace_back("hide"); }

  const std::string& last() const { return requests.back(); }

  std::vector<std::string> requests;
};

// The user answers after two seconds; without a scripted decision it is `insert`.
class ScriptedReviewPanel final : public ReviewPanel {
 public:
  Task<ReviewDecision> present(ReviewRequest request) override {
    requests.push_back(std::move(request));
    co_await sleepFor(std::chrono::seconds(2));
    if (decisions.empty()) co_return ReviewDecision::insert;
    const ReviewDecision decision = decisions.front();
    decisions.pop_front();
    co_return decision;
  }

  std::deque<ReviewDecision> decisions;
  std::vector<ReviewRequest> requests;
};

}  // namespace quillo
